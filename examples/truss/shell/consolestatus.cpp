// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/consolestatus.h"

#include "truss/shell/terminaltext.h"

#include <algorithm>
#include <new>

namespace truss
{
void ConsoleStatus::setStatus(const Ztring& text)
{
    m_text = text;
}

void ConsoleStatus::setStatus(const Ztring& text, int percent)
{
    setStatus(text);
    m_percent = static_cast<unsigned>(std::clamp(percent, 0, 100));
}

void ConsoleStatus::updateEvents(int percent)
{
    draw(percent);
    if (m_signal.take())
        setInterrupted();
}

void ConsoleStatus::setBusy(bool busy)
{
    m_busy = busy;
    if (!busy)
        m_line.clear();
}

void ConsoleStatus::turnWheel()
{
    m_line.turnWheel();
    if (m_busy)
        draw(m_drawnPercent);
}

void ConsoleStatus::draw(int percent)
{
    m_drawnPercent = percent;
    try
    {
        m_line.draw(TerminalText::encode(m_text), percent);
    }
    catch (const std::bad_alloc&)
    {
        // No edit fails, and above all none stays half undone, for what it would only have shown.
    }
}
} // namespace truss
