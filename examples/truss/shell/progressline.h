// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include <string>

namespace truss
{
/// One line at the foot of a terminal that is drawn over and over. Does nothing where standard error is no terminal.
class ProgressLine
{
public:
    ProgressLine();

    /// Shows a bar and the title; without a bar for a negative percentage.
    void draw(const std::string& title, int percent);
    /// Gives the line back for other output.
    void clear();

private:
    bool m_isTerminal;
    bool m_isDrawn = false;
};
} // namespace truss
