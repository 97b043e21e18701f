// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/importcommand.h"

#include <kel/interrupted.h>
#include <kel/status.h>

namespace truss
{
void ImportCommand::execute()
{
    CompositeCommand::execute();
    // A composite keeps an interruption to itself, but the status remembers it.
    if (!Status::getSingleton().isInterrupted())
        return;
    undo();
    throw Interrupted();
}
} // namespace truss
