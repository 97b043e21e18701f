// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include <iosfwd>
#include <string>

namespace truss
{
/// One line at the foot of a terminal that is drawn over and over. Does nothing where there is no terminal.
class ProgressLine
{
public:
    /// On standard error.
    ProgressLine();
    /// For tests: on any stream. The stream outlives the line.
    ProgressLine(std::ostream& out, bool isTerminal) : m_out(out), m_isTerminal(isTerminal) {}

    /// Shows a wheel, a bar (none for a negative percentage) and the title.
    void draw(const std::string& title, int percent);
    /// Turns the wheel, which shows at the next drawing.
    void turnWheel() { ++m_turns; }
    /// Gives the line back for other output.
    void clear();

private:
    std::ostream& m_out;
    bool m_isTerminal;
    bool m_isDrawn = false;
    unsigned m_turns = 0;
};
} // namespace truss
