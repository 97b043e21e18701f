// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include "truss/edits/compositecommand.h"
#include "truss/model/vector.h"

namespace truss
{
class Model;
class Node;

/// Moves a node. A position that leaves a bar without length is a Problem.
class MoveCommand : public CompositeCommand
{
public:
    MoveCommand(Model& model, Node& node, const Vector& position);
};
} // namespace truss
