// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/stringtokenizer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> tokens;
    for (StringTokenizer tokenizer(text, separator); tokenizer.hasNext();)
        tokens.push_back(tokenizer.m_token);
    return tokens;
}
} // namespace

TEST(StringTokenizer, GivesTheTokensInOrder)
{
    EXPECT_THAT(split("a,bc,d", ','), ElementsAre("a", "bc", "d"));
}

TEST(StringTokenizer, ATextWithoutSeparatorIsOneToken)
{
    EXPECT_THAT(split("a b", ','), ElementsAre("a b"));
}

TEST(StringTokenizer, SkipsEmptyTokens)
{
    EXPECT_THAT(split("a,,b,", ','), ElementsAre("a", "b"));
    EXPECT_THAT(split(",,a", ','), ElementsAre("a"));
}

TEST(StringTokenizer, NothingButSeparatorsHasNoToken)
{
    EXPECT_THAT(split(",,", ','), IsEmpty());
    EXPECT_THAT(split("", ','), IsEmpty());
}

TEST(StringTokenizer, StaysAtTheEnd)
{
    StringTokenizer tokenizer("a", ',');
    EXPECT_TRUE(tokenizer.hasNext());
    EXPECT_EQ(tokenizer.m_token, "a");
    EXPECT_FALSE(tokenizer.hasNext());
    EXPECT_EQ(tokenizer.m_token, "");
    EXPECT_FALSE(tokenizer.hasNext());
}

TEST(StringTokenizer, KeepsACopyOfTheText)
{
    std::string text = "a,b";
    StringTokenizer tokenizer(text, ',');
    text = "c";
    EXPECT_TRUE(tokenizer.hasNext());
    EXPECT_TRUE(tokenizer.hasNext());
    EXPECT_EQ(tokenizer.m_token, "b");
}

TEST(StringTokenizer, AnyByteCanSeparate)
{
    EXPECT_THAT(split(std::string("a\0b", 3), '\0'), ElementsAre("a", "b"));
    EXPECT_THAT(split("a\xFF"
                      "b",
                      '\xFF'),
                ElementsAre("a", "b"));
}

TEST(StringTokenizer, GetAsAppendsTheTokens)
{
    Array<std::string> tokens;
    tokens.push_back("first");
    StringTokenizer::getAs(tokens, ",a,,b", ',');
    EXPECT_THAT(tokens, ElementsAre("first", "a", "b"));
    EXPECT_EQ(tokens.capacity(), 4u);
    StringTokenizer::getAs(tokens, "", ',');
    EXPECT_EQ(tokens.size(), 3u);
}

TEST(StringTokenizer, FindLooksForAWholeToken)
{
    EXPECT_TRUE(StringTokenizer::find("b", "a,b,c", ','));
    EXPECT_TRUE(StringTokenizer::find("c", "a,b,c", ','));
    EXPECT_FALSE(StringTokenizer::find("B", "a,b,c", ','));
    EXPECT_FALSE(StringTokenizer::find("b", "ab,bc", ','));
    EXPECT_FALSE(StringTokenizer::find("a,b", "a,b", ','));
}

TEST(StringTokenizer, FindNeverFindsTheEmptyWord)
{
    EXPECT_FALSE(StringTokenizer::find("", "a,,b", ','));
    EXPECT_FALSE(StringTokenizer::find("", "", ','));
}
