// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include <kel/ztring.h>

#include <string>

namespace truss
{
/// Makes messages fit for a terminal. File names and damaged files may hold anything, also what moves the cursor.
class TerminalText
{
public:
    TerminalText() = delete;

    /// In the locale's encoding, or in UTF-8 where that cannot express the text; control characters other than line
    /// ends become "?".
    static std::string encode(const Ztring& text);

    /// The same with the lines of the text joined by ": ", so that a problem and its contexts make one line.
    static std::string encodeInOneLine(const Ztring& text);
};
} // namespace truss
