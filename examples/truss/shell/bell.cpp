// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/bell.h"

#include <iostream>

namespace truss
{
void Bell::play(Event event, bool)
{
    if (m_on && event == WorkFinished)
        std::cerr << '\a' << std::flush;
}
} // namespace truss
