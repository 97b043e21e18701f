// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/consolestatus.h"

#include "truss/shell/terminaltext.h"

#include <algorithm>

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
    m_line.draw(TerminalText::encode(m_text), percent);
}
} // namespace truss
