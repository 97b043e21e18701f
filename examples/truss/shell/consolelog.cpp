// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/consolelog.h"

#include "truss/shell/consolestatus.h"
#include "truss/shell/terminaltext.h"

#include <iostream>

namespace truss
{
namespace
{
void clearProgressLine()
{
    // Asked anew each time: the log outlives the status.
    if (auto* const status = dynamic_cast<ConsoleStatus*>(Status::s_singleton))
        status->clearLine();
}
} // namespace

void ConsoleLog::append(const Ztring& text, Message::Type type)
{
    clearProgressLine();
    switch (type)
    {
    case Message::Info:
        std::cout << TerminalText::encode(text) << std::endl;
        break;
    case Message::Warning:
        std::cerr << TerminalText::encode(text) << std::endl;
        break;
    default:
        std::cerr << TerminalText::encodeInOneLine(text) << std::endl;
    }
}
} // namespace truss
