// SPDX-License-Identifier: MIT
// Tokens of a line: none is empty or holds a separator, none is lost, and joined they are split again.
#include <kel/stringtokenizer.h>

#include "support/fuzzing.h"

#include <algorithm>
#include <string>
#include <vector>

namespace
{
using Tokens = std::vector<std::string>;

Tokens split(const std::string& line, char separator)
{
    Tokens tokens;
    StringTokenizer tokenizer(line, separator);
    while (tokenizer.hasNext())
        tokens.push_back(tokenizer.m_token);
    EXPECT_PROPERTY(!tokenizer.hasNext());
    return tokens;
}

std::string join(const Tokens& tokens, const std::string& separators)
{
    std::string line;
    for (const std::string& token : tokens)
        line += (line.empty() ? "" : separators) + token;
    return line;
}

bool equal(const Array<std::string>& array, const Tokens& tokens)
{
    return std::equal(array.begin(), array.end(), tokens.begin(), tokens.end());
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const char separator = input.takeByte();
    const std::string word = input.takePart();
    const std::string line = input.takeRest();

    const Tokens tokens = split(line, separator);
    std::string content = line;
    std::erase(content, separator);
    EXPECT_PROPERTY(join(tokens, "") == content);
    for (const std::string& token : tokens)
    {
        EXPECT_PROPERTY(!token.empty() && token.find(separator) == std::string::npos);
        EXPECT_PROPERTY(StringTokenizer::find(token, line, separator));
    }
    const bool isThere = std::find(tokens.begin(), tokens.end(), word) != tokens.end();
    EXPECT_PROPERTY(StringTokenizer::find(word, line, separator) == isThere);

    const std::string once(1, separator);
    const std::string twice(2, separator);
    EXPECT_PROPERTY(split(join(tokens, once), separator) == tokens);
    EXPECT_PROPERTY(split(twice + join(tokens, twice) + once, separator) == tokens);

    Array<std::string> array;
    StringTokenizer::getAs(array, line, separator);
    EXPECT_PROPERTY(equal(array, tokens));
    return 0;
}
