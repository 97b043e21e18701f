// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/terminaltext.h"

#include <kel/texthelper.h>

#include <algorithm>

namespace truss
{
namespace
{
bool isHarmful(wxUniChar character)
{
    const auto code = character.GetValue();
    return (code < 0x20 && code != '\n') || (code >= 0x7f && code < 0xa0);
}
} // namespace

std::string TerminalText::encode(const Ztring& text)
{
    wxString clean = text.wx();
    for (wxString::iterator character = clean.begin(); character != clean.end(); ++character)
    {
        if (isHarmful(*character))
            *character = '?';
    }
    while (clean.EndsWith("\n"))
        clean.RemoveLast();
    const std::string bytes = Ztring(clean).str();
    return bytes.empty() ? Ztring(clean).toUtf8() : bytes;
}

std::string TerminalText::encodeInOneLine(const Ztring& text)
{
    std::string bytes = encode(text);
    return TextHelper::replaceAll("\n", ": ", bytes);
}
} // namespace truss
