// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/texthelper.h>

#include "support/catalogue.h"
#include "support/problem.h"

#include <gtest/gtest.h>

#include <ctime>
#include <limits>
#include <string>

namespace
{
const char* const s_dateFormat = "%d %b %Y %H:%M:%S";

std::string replacedAll(const std::string& target, const std::string& value, std::string text)
{
    EXPECT_EQ(&TextHelper::replaceAll(target, value, text), &text);
    return text;
}

std::string replaced(const std::string& target, const std::string& value, std::string text)
{
    EXPECT_EQ(&TextHelper::replace(target, value, text), &text);
    return text;
}

Ztring getShortFileName(const Ztring& path)
{
    Ztring name = "before";
    TextHelper::getShortFileName(path, name);
    return name;
}

std::string getTimeDate(long time, const char* format)
{
    std::string text = "at ";
    TextHelper::appendTimeDate(text, time, format);
    return text;
}
} // namespace

TEST(TextHelper, RemoveDeletesEveryOccurrence)
{
    std::string text = "xxaxx";
    TextHelper::remove('x', text);
    EXPECT_EQ(text, "a");
    TextHelper::remove('b', text);
    EXPECT_EQ(text, "a");
    text = std::string("a\0b", 3);
    TextHelper::remove('\0', text);
    EXPECT_EQ(text, "ab");
}

TEST(TextHelper, MakeTextDropsAmpersandsAndFullStops)
{
    EXPECT_EQ(TextHelper::makeText("&Open..."), "Open");
    EXPECT_EQ(TextHelper::makeText("Version 1.2"), "Version 12");
    EXPECT_EQ(TextHelper::makeText(""), "");
}

TEST(TextHelper, TrimTextCutsFromTwentyOneBytesOn)
{
    EXPECT_EQ(TextHelper::trimText("12345678901234567890"), "12345678901234567890");
    EXPECT_EQ(TextHelper::trimText("123456789012345678901"), "12345678901234567...");
    EXPECT_EQ(TextHelper::trimText(""), "");
}

TEST(TextHelper, ShortFileNameHasNeitherDirectoryNorExtension)
{
    EXPECT_EQ(getShortFileName("/home/me/truss.kel"), "truss");
    EXPECT_EQ(getShortFileName("c:\\models\\truss.kel"), "truss");
    EXPECT_EQ(getShortFileName("truss"), "truss");
}

TEST(TextHelper, ShortFileNameOfNoPathIsUntitled)
{
    EXPECT_EQ(getShortFileName(""), "untitled");
    const Catalogue catalogue{{"untitled", "ohne Titel"}};
    EXPECT_EQ(getShortFileName(""), "ohne Titel");
}

TEST(TextHelper, TrimWhitespaceCutsBothEnds)
{
    EXPECT_EQ(TextHelper::trimWhitespace("\t a b \r\n"), "a b");
    EXPECT_EQ(TextHelper::trimWhitespace("a\n b"), "a\n b");
    EXPECT_EQ(TextHelper::trimWhitespace(" \n"), "");
    EXPECT_EQ(TextHelper::trimWhitespace(""), "");
    EXPECT_EQ(TextHelper::trimWhitespace("\v\f"), "\v\f");
}

TEST(TextHelper, ReplaceAllDoesNotSearchWhatItInserted)
{
    EXPECT_EQ(replacedAll("a", "aa", "banana"), "baanaanaa");
    EXPECT_EQ(replacedAll("an", "", "banana"), "ba");
    EXPECT_EQ(replacedAll("aaa", "b", "aaaa"), "ba");
    EXPECT_EQ(replacedAll("x", "y", "banana"), "banana");
    EXPECT_EQ(replacedAll("a", "b", ""), "");
}

TEST(TextHelper, ReplaceAllTakesTheTextItselfAsTargetOrValue)
{
    std::string text = "ab";
    TextHelper::replaceAll("b", text, text);
    EXPECT_EQ(text, "aab");
    TextHelper::replaceAll(text, "c", text);
    EXPECT_EQ(text, "c");
}

TEST(TextHelper, ReplaceReplacesTheFirstOccurrence)
{
    EXPECT_EQ(replaced("a", "aa", "banana"), "baanana");
    EXPECT_EQ(replaced("banana", "", "banana"), "");
    EXPECT_EQ(replaced("x", "y", "banana"), "banana");
}

TEST(TextHelper, TimeDateIsInUtc)
{
    EXPECT_EQ(getTimeDate(0, s_dateFormat), "at 01 Jan 1970 00:00:00");
    EXPECT_EQ(getTimeDate(1330956429, s_dateFormat), "at 05 Mar 2012 14:07:09");
}

TEST(TextHelper, ANegativeTimeAppendsNothing)
{
    EXPECT_EQ(getTimeDate(-1, s_dateFormat), "at ");
    EXPECT_EQ(getTimeDate(std::numeric_limits<long>::min(), s_dateFormat), "at ");
}

TEST(TextHelper, ATimeWithoutCalendarDateFailsTheAssertion)
{
    std::string text = "at ";
    EXPECT_ASSERTION(TextHelper::appendTimeDate(text, std::numeric_limits<long>::max(), s_dateFormat),
                     "valid(utcTime)");
    EXPECT_EQ(text, "at ");
}

TEST(TextHelper, ATimeDateThatDoesNotFitAppendsNothing)
{
    EXPECT_EQ(getTimeDate(0, std::string(254, 'x').c_str()), "at " + std::string(254, 'x'));
    EXPECT_EQ(getTimeDate(0, std::string(255, 'x').c_str()), "at ");
    EXPECT_EQ(getTimeDate(0, ""), "at ");
}

TEST(TextHelper, TimeDateNowIsTheCurrentTime)
{
    const std::time_t before = std::time(nullptr);
    std::string text = "at ";
    TextHelper::appendTimeDateNow(text, "%Y-%m-%d %H:%M:%S");
    const std::time_t after = std::time(nullptr);
    EXPECT_GE(text, getTimeDate(before, "%Y-%m-%d %H:%M:%S"));
    EXPECT_LE(text, getTimeDate(after, "%Y-%m-%d %H:%M:%S"));
}

TEST(TextHelper, CaseIsChangedInPlace)
{
    std::string text = "aBc 1\xE9";
    EXPECT_EQ(&TextHelper::toUpperCase(text), &text);
    EXPECT_EQ(text, "ABC 1\xE9");
    EXPECT_EQ(&TextHelper::toLowerCase(text), &text);
    EXPECT_EQ(text, "abc 1\xE9");
}

TEST(TextHelper, FindLowerCaseLowersTheTextOnly)
{
    EXPECT_TRUE(TextHelper::findLowerCase("abc", "xABCx"));
    EXPECT_FALSE(TextHelper::findLowerCase("ABC", "xABCx"));
    EXPECT_FALSE(TextHelper::findLowerCase("abd", "xABCx"));
    EXPECT_TRUE(TextHelper::findLowerCase("", ""));
}

TEST(TextHelper, AddQuotesPutsTheQuoteOnBothSides)
{
    EXPECT_EQ(TextHelper::addQuotes("a b", "'"), "'a b'");
    EXPECT_EQ(TextHelper::addQuotes("", "\""), "\"\"");
    EXPECT_EQ(TextHelper::addQuotes("a", "<>"), "<>a<>");
}
