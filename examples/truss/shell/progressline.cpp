// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/progressline.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

namespace truss
{
namespace
{
constexpr int barWidth = 30;                        // characters
constexpr const char* backToEmptyLine = "\r\033[K"; // carriage return, then "erase to the end of the line" (ECMA-48)
constexpr const char* wheel = "|/-\\";
constexpr unsigned spokes = 4;

std::string makeBar(int percent)
{
    const int filled = std::clamp(percent, 0, 100) * barWidth / 100;
    return '[' + std::string(static_cast<std::size_t>(filled), '#') +
           std::string(static_cast<std::size_t>(barWidth - filled), '.') + "] " + std::to_string(percent) + "% ";
}
} // namespace

ProgressLine::ProgressLine() : ProgressLine(std::cerr, isatty(STDERR_FILENO) == 1) {}

void ProgressLine::draw(const std::string& title, int percent)
{
    if (!m_isTerminal)
        return;
    m_out << backToEmptyLine << wheel[m_turns % spokes] << ' ' << (percent >= 0 ? makeBar(percent) : std::string())
          << title << std::flush;
    m_isDrawn = true;
}

void ProgressLine::clear()
{
    if (m_isDrawn)
        m_out << backToEmptyLine << std::flush;
    m_isDrawn = false;
}
} // namespace truss
