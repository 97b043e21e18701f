// SPDX-License-Identifier: MIT
// What the example application shows on a terminal.
#include <truss/shell/progressline.h>
#include <truss/shell/terminaltext.h>

#include <support/scopedlocale.h>

#include <gtest/gtest.h>

#include <sstream>

namespace
{
using truss::ProgressLine;
using truss::TerminalText;

Ztring fromUtf8(const char* bytes)
{
    Ztring text;
    text.fromUtf8(bytes);
    return text;
}

TEST(ProgressLine, DrawsABarOverTheLastOne)
{
    std::ostringstream out;
    ProgressLine line(out, true);
    line.draw("Solving", 50);
    EXPECT_EQ(out.str(), "\r\033[K| [###############...............] 50% Solving");
}

TEST(ProgressLine, DrawsNoBarWithoutAPercentage)
{
    std::ostringstream out;
    ProgressLine line(out, true);
    line.draw("Solving", -1);
    EXPECT_EQ(out.str(), "\r\033[K| Solving");
}

TEST(ProgressLine, TurnsItsWheel)
{
    std::ostringstream out;
    ProgressLine line(out, true);
    for (int i = 0; i < 5; ++i)
    {
        line.draw("", -1);
        line.turnWheel();
    }
    EXPECT_EQ(out.str(), "\r\033[K| \r\033[K/ \r\033[K- \r\033[K\\ \r\033[K| ");
}

TEST(ProgressLine, GivesTheLineBackOnce)
{
    std::ostringstream out;
    ProgressLine line(out, true);
    line.clear();
    EXPECT_EQ(out.str(), "");
    line.draw("", -1);
    out.str("");
    line.clear();
    line.clear();
    EXPECT_EQ(out.str(), "\r\033[K");
}

TEST(ProgressLine, DrawsNothingWithoutATerminal)
{
    std::ostringstream out;
    ProgressLine line(out, false);
    line.draw("Solving", 50);
    line.clear();
    EXPECT_EQ(out.str(), "");
}

TEST(TerminalText, ReplacesWhatWouldMoveTheCursor)
{
    EXPECT_EQ(TerminalText::encode("a\rb\033[2J\x7f\tc"), "a?b?[2J??c");
}

TEST(TerminalText, JoinsTheLinesOfAProblem)
{
    EXPECT_EQ(TerminalText::encodeInOneLine("Failed\nfor a reason\n"), "Failed: for a reason");
}

TEST(TerminalText, IsInTheEncodingOfTheLocaleOrElseInUtf8)
{
    for (const char* locale : {"C", "C.utf8"})
    {
        const ScopedLocale scope(locale);
        EXPECT_EQ(TerminalText::encode(fromUtf8("Größe")), "Größe") << locale;
    }
}
} // namespace
