// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include "truss/edits/compositecommand.h"

namespace truss
{
class Model;
class NamedEntity;

/// Deletes a node or a bar. A node takes its bars, supports and loads with it; undoing brings all of them back under
/// the same keys.
class DeleteCommand : public CompositeCommand
{
public:
    DeleteCommand(Model& model, NamedEntity& entity);
};
} // namespace truss
