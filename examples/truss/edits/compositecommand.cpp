// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/compositecommand.h"

namespace truss
{
void CompositeCommand::execute()
{
    try
    {
        m_steps.execute();
    }
    catch (...)
    {
        m_steps.undo(); // the library rolls nothing back
        throw;
    }
}
} // namespace truss
