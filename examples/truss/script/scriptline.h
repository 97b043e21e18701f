// SPDX-License-Identifier: MIT
// truss: script
#pragma once

#include <kel/ztring.h>

#include <string>
#include <vector>

namespace truss
{
/// One line of a script.
struct ScriptLine
{
    Ztring place;                   ///< file and line number, for messages
    std::vector<std::string> words; ///< in UTF-8
};
} // namespace truss
