// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/compositecommand.h"

namespace truss
{
void CompositeCommand::execute()
{
    runWhole(&Mementos::execute);
}

void CompositeCommand::redo()
{
    runWhole(&Mementos::redo);
}

void CompositeCommand::runWhole(void (Mementos::*run)())
{
    try
    {
        (m_steps.*run)();
    }
    catch (...)
    {
        m_steps.undo();
        throw;
    }
}
} // namespace truss
