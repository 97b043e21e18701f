// SPDX-License-Identifier: MIT
// Operations on byte strings against what they promise, and dates against the calendar.
#include <kel/problem.h>
#include <kel/texthelper.h>
#include <kel/translator.h>

#include "support/fuzzing.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

namespace
{
std::size_t count(const std::string& text, const std::string& target)
{
    std::size_t found = 0;
    for (std::size_t at = text.find(target); at != std::string::npos; at = text.find(target, at + target.size()))
        ++found;
    return found;
}

void expectReplacing(const std::string& target, const std::string& value, const std::string& text)
{
    std::string first = text;
    EXPECT_PROPERTY(&TextHelper::replace(target, value, first) == &first);
    const std::size_t at = text.find(target);
    EXPECT_PROPERTY(first == (at == std::string::npos ? text : std::string(text).replace(at, target.size(), value)));
    if (target.empty())
        return;
    std::string all = text;
    EXPECT_PROPERTY(&TextHelper::replaceAll(target, value, all) == &all);
    EXPECT_PROPERTY(all.size() + count(text, target) * target.size() ==
                    text.size() + count(text, target) * value.size());
    // With a mark that occurs nowhere, it can be undone.
    const std::string mark = text + target + value + "\x01";
    std::string marked = text;
    TextHelper::replaceAll(target, mark, marked);
    TextHelper::replaceAll(mark, target, marked);
    EXPECT_PROPERTY(marked == text);
}

void expectShortening(const std::string& text)
{
    const std::string trimmed = TextHelper::trimText(text);
    EXPECT_PROPERTY(text.size() <= 20 ? trimmed == text : trimmed == text.substr(0, 17) + "...");
    EXPECT_PROPERTY(TextHelper::trimText(trimmed) == trimmed);

    const std::string bare = TextHelper::trimWhitespace(text);
    EXPECT_PROPERTY(text.find(bare) != std::string::npos);
    EXPECT_PROPERTY(bare.empty() || (!std::strchr(" \t\n\r", bare.front()) && !std::strchr(" \t\n\r", bare.back())) ||
                    bare.front() == '\0' || bare.back() == '\0');
    EXPECT_PROPERTY(TextHelper::trimWhitespace(" \t" + bare + "\r\n") == bare);

    const std::string plain = TextHelper::makeText(text);
    EXPECT_PROPERTY(plain.find_first_of("&.") == std::string::npos);
    EXPECT_PROPERTY(static_cast<std::size_t>(std::count_if(
                        text.begin(), text.end(), [](char c) { return c != '&' && c != '.'; })) == plain.size());
}

void expectCases(const std::string& needle, const std::string& text)
{
    std::string lower = text;
    TextHelper::toLowerCase(lower);
    std::string upper = text;
    TextHelper::toUpperCase(upper);
    EXPECT_PROPERTY(lower.size() == text.size() && upper.size() == text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const bool isLower = text[i] >= 'a' && text[i] <= 'z';
        const bool isUpper = text[i] >= 'A' && text[i] <= 'Z';
        EXPECT_PROPERTY(lower[i] == (isUpper ? text[i] | 0x20 : text[i]));
        EXPECT_PROPERTY(upper[i] == (isLower ? text[i] & ~0x20 : text[i]));
    }
    EXPECT_PROPERTY(TextHelper::findLowerCase(needle, text) == (lower.find(needle) != std::string::npos));
}

/// The day number of a date, counted from 1970-01-01.
long toDays(long year, unsigned month, unsigned day)
{
    year -= month <= 2;
    const long era = (year >= 0 ? year : year - 399) / 400;
    const long yearOfEra = year - era * 400;
    const long dayOfYear = (153 * (month + (month > 2 ? -3L : 9L)) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

/// The last second of the last year that fits into an int.
constexpr long lastSecond = 67767976233532799;

void expectDate(long time)
{
    std::string text = "at ";
    try
    {
        TextHelper::appendTimeDate(text, time, "%Y %m %d %H %M %S");
    }
    catch (const Problem& problem)
    {
        EXPECT_PROPERTY(time > lastSecond && problem.getMessage().has("valid(utcTime)"));
        return;
    }
    // The C library counts years from 1900, so that it gets on for 1900 years more, but prints them as an int.
    if (time > lastSecond)
        return;
    if (time < 0)
    {
        EXPECT_PROPERTY(text == "at ");
        return;
    }
    long year = 0;
    unsigned part[5] = {};
    EXPECT_PROPERTY(
        std::sscanf(text.c_str(), "at %ld %u %u %u %u %u", &year, part, part + 1, part + 2, part + 3, part + 4) == 6);
    const long days = toDays(year, part[0], part[1]);
    EXPECT_PROPERTY(((days * 24 + part[2]) * 60 + part[3]) * 60 + part[4] == time);
}

void expectMarked(const std::string& text)
{
    std::string inner = text;
    TextHelper::replaceAll("trs(\"", "", inner);
    TextHelper::replaceAll("\")", "", inner);
    if (inner.find("trs(\"") == std::string::npos && inner.find("\")") == std::string::npos)
        EXPECT_PROPERTY(Translator::trTrimTrs("trs(\"" + inner + "\")") == Ztring(inner));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const char byte = input.takeByte();
    const std::string target = input.takePart();
    const std::string value = input.takePart();
    const std::string text = input.takeRest();
    expectReplacing(target, value, text);
    expectShortening(text);
    expectCases(target, text);
    expectMarked(text);

    std::string removed = text;
    TextHelper::remove(byte, removed);
    std::string expected = text;
    TextHelper::replaceAll(std::string(1, byte), "", expected);
    EXPECT_PROPERTY(removed == expected);

    std::int64_t time = 0;
    std::memcpy(&time, target.data(), std::min(target.size(), sizeof time));
    expectDate(static_cast<long>(time));
    return 0;
}
