// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/commandline.h"

namespace truss
{
std::vector<std::string> CommandLine::split(const std::string& text)
{
    std::vector<std::string> words;
    bool inWord = false;
    bool inQuotes = false;
    for (const char character : text)
    {
        if (character == ' ' && !inQuotes)
        {
            inWord = false;
            continue;
        }
        if (!inWord)
            words.emplace_back();
        inWord = true;
        if (character == '"')
            inQuotes = !inQuotes;
        else
            words.back() += character;
    }
    return words;
}
} // namespace truss
