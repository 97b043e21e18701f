// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/step.h"

namespace truss
{
void Step::execute()
{
    if (m_done)
        return;
    apply();
    m_done = true;
}

void Step::undo()
{
    if (!m_done)
        return;
    revert();
    m_done = false;
}
} // namespace truss
