// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/texthelper.h>

#include <kel/file_kel.h>
#include <kel/translator.h>
#include <kel/zassert.h>

#include <algorithm>
#include <cctype>
#include <ctime>

namespace
{
const char* const s_whitespace = " \t\n\r";

char toLower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

char toUpper(char c)
{
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}
} // namespace

void TextHelper::remove(char c, std::string& text)
{
    std::erase(text, c);
}

std::string TextHelper::makeText(const std::string& label)
{
    std::string text = label;
    remove('&', text);
    remove('.', text);
    return text;
}

std::string TextHelper::trimText(const std::string& text)
{
    constexpr std::size_t longest = 20;
    return text.size() > longest ? text.substr(0, longest - 3) + "..." : text;
}

void TextHelper::getShortFileName(const Ztring& path, Ztring& name)
{
    name = path.empty() ? Translator::tr("untitled") : Kel::File(path).getName();
}

std::string TextHelper::trimWhitespace(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(s_whitespace);
    if (first == std::string::npos)
        return std::string();
    return text.substr(first, text.find_last_not_of(s_whitespace) + 1 - first);
}

std::string& TextHelper::replaceAll(const std::string& target, const std::string& value, std::string& text)
{
    std::string result;
    std::size_t start = 0;
    for (std::size_t found = text.find(target); found != std::string::npos; found = text.find(target, start))
    {
        result.append(text, start, found - start).append(value);
        start = found + target.size();
    }
    text = result.append(text, start, std::string::npos);
    return text;
}

std::string& TextHelper::replace(const std::string& target, const std::string& value, std::string& text)
{
    const std::size_t found = text.find(target);
    if (found != std::string::npos)
        text.replace(found, target.size(), value);
    return text;
}

void TextHelper::appendTimeDate(std::string& out, long time, const char* format)
{
    if (time < 0)
        return;
    const std::time_t seconds = time;
    const std::tm* const utcTime = std::gmtime(&seconds);
    KEL_ASSERT(utcTime != nullptr, "valid(utcTime)");
    char buffer[255];
    out.append(buffer, std::strftime(buffer, sizeof buffer, format, utcTime));
}

void TextHelper::appendTimeDateNow(std::string& out, const char* format)
{
    appendTimeDate(out, static_cast<long>(std::time(nullptr)), format);
}

std::string& TextHelper::toLowerCase(std::string& text)
{
    std::transform(text.begin(), text.end(), text.begin(), toLower);
    return text;
}

std::string& TextHelper::toUpperCase(std::string& text)
{
    std::transform(text.begin(), text.end(), text.begin(), toUpper);
    return text;
}

bool TextHelper::findLowerCase(const std::string& needle, const std::string& text)
{
    std::string lowered = text;
    return toLowerCase(lowered).find(needle) != std::string::npos;
}

Ztring TextHelper::addQuotes(const Ztring& text, const Ztring& quote)
{
    Ztring quoted = quote;
    quoted.append(text).append(quote);
    return quoted;
}
