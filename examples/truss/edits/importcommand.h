// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include "truss/edits/compositecommand.h"

namespace truss
{
/// Adds all entities of a file in one go. Unlike other composites it is all or nothing: an import that the user
/// interrupts takes back what it has added and throws Interrupted.
class ImportCommand : public CompositeCommand
{
public:
    using CompositeCommand::CompositeCommand;

    void execute() override;
};
} // namespace truss
