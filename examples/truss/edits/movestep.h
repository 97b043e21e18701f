// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include "truss/edits/step.h"
#include "truss/model/vector.h"

namespace truss
{
class Model;
class Node;

/// Gives a node another position.
class MoveStep : public Step
{
public:
    MoveStep(Model& model, Node& node, const Vector& position);

private:
    void apply() override { exchange(); }
    void revert() override { exchange(); }
    void exchange();

    Model& m_model;
    Node& m_node;
    Vector m_position; // the one that the node does not have now
};
} // namespace truss
