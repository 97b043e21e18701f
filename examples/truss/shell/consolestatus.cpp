// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/consolestatus.h"

#include "truss/shell/terminaltext.h"

#include <chrono>
#include <thread>

namespace truss
{
void ConsoleStatus::setStatus(const Ztring& text)
{
    m_text = text;
}

void ConsoleStatus::setStatus(const Ztring& text, int percent)
{
    setStatus(text);
    m_line.draw(TerminalText::encode(m_text), percent);
}

void ConsoleStatus::updateEvents(int percent)
{
    m_line.draw(TerminalText::encode(m_text), percent);
    if (m_signal.take())
        setInterrupted();
}

void ConsoleStatus::sleep(unsigned int ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    Status::sleep(ms);
}
} // namespace truss
