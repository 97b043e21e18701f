// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include "bufferarea_p.h"
#include "hexscope_p.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <ios>
#include <istream>
#include <limits>
#include <string>
#include <system_error>
#include <type_traits>

/// Extraction of numbers and texts past the formatting of std::istream, which would take most of the time of opening a
/// file.
///
/// A number that stands with the character behind it among those that the stream buffer has ready is converted there.
/// Whatever is not so simple is left to the stream itself, which finds its buffer untouched: the end of what is ready,
/// a stream with other settings or in another state, what is no plain number or out of range.
namespace StreamInput
{
/// Whether formatted extraction comes down to taking plain characters from the stream buffer.
inline bool isPlain(const std::ios& in)
{
    constexpr auto deviating = std::ios_base::basefield | std::ios_base::skipws;
    return in.good() && (in.flags() & deviating) == (std::ios_base::dec | std::ios_base::skipws) && !in.tie();
}

inline const char* skipSpace(const char* begin, const char* end)
{
    while (begin != end && (*begin == ' ' || (*begin >= '\t' && *begin <= '\r')))
        ++begin;
    return begin;
}

/// Whether a number that the standard conversion could read in another way than std::from_chars stands here.
template <class T>
bool isPeculiar(const char* begin)
{
    // "inf" and "nan" are numbers to std::from_chars only.
    return std::is_floating_point_v<T> && (*begin > '9' || (*begin == '-' && begin[1] > '9'));
}

/// Whether the standard conversion could take the character where std::from_chars has ended.
template <class T, int base>
bool canGoOn(char next)
{
    if constexpr (std::is_floating_point_v<T>)
        return next == '.' || next == 'e' || next == 'E';
    else
        return base == 16 && (next == 'x' || next == 'X');
}

/// The value of a digit; more than any base for all else.
inline unsigned getDigit(char c)
{
    const auto digit = static_cast<unsigned>(c - '0');
    const auto letter = static_cast<unsigned>((c | 0x20) - 'a');
    return digit < 10 ? digit : letter < 6 ? letter + 10 : 255;
}

/// Ends where std::from_chars would, or null: the number is not one of a few digits that end in the range. Such
/// numbers, ids and lengths, are most of a stream, and no type of 32 bits is too small for them.
template <class T, int base>
const char* convertShort(const char* begin, const char* end, T& value)
{
    constexpr std::ptrdiff_t longest = 7;
    const char* const limit = begin + std::min(end - begin, longest + 1);
    T number = 0;
    const char* next = begin;
    for (unsigned digit = 0; next != limit && (digit = getDigit(*next)) < base; ++next)
        number = number * base + static_cast<T>(digit);
    if (next == begin || next == limit)
        return nullptr;
    value = number;
    return next;
}

/// Ends where std::from_chars does, or null where that fails.
template <class T, int base>
const char* convert(const char* begin, const char* end, T& value)
{
    std::from_chars_result result;
    if constexpr (std::is_floating_point_v<T>)
        result = std::from_chars(begin, end, value);
    else
    {
        if constexpr (sizeof(T) >= 4)
        {
            if (const char* const next = convertShort<T, base>(begin, end, value))
                return next;
        }
        result = std::from_chars(begin, end, value, base);
    }
    return result.ec == std::errc() ? result.ptr : nullptr;
}

/// Takes a number out of what the buffer of a plain stream has ready; false, and nothing is changed, when that cannot
/// be done.
template <class T, int base = 10>
bool takeReady(std::istream& in, T& value)
{
    std::streambuf& buffer = *in.rdbuf();
    const char* const end = BufferArea::getEnd(buffer);
    const char* const begin = skipSpace(BufferArea::getBegin(buffer), end);
    if (end - begin < 2 || isPeculiar<T>(begin))
        return false;
    T converted{};
    const char* const next = convert<T, base>(begin, end, converted);
    if (!next || next == end || canGoOn<T, base>(*next))
        return false;
    value = converted;
    BufferArea::takeTo(buffer, next);
    return true;
}

/// Types whose formatted extraction would read a character, or a word, and not a number.
template <class T>
inline constexpr bool isCode =
    std::is_integral_v<T> && !std::is_same_v<T, short> && !std::is_same_v<T, unsigned short> &&
    !std::is_same_v<T, int> && !std::is_same_v<T, unsigned> && !std::is_same_v<T, long> &&
    !std::is_same_v<T, unsigned long> && !std::is_same_v<T, long long> && !std::is_same_v<T, unsigned long long>;

/// As `in >> value`.
template <class T>
requires(!isCode<T>) void extract(std::istream& in, T& value)
{
    if (!isPlain(in) || !takeReady(in, value))
        in >> value;
}

/// Left to the stream: the standard library converts its text in no faster way.
inline void extract(std::istream& in, long double& value)
{
    in >> value;
}

/// Of a bool or a character, the number that stands for it. Out of range it becomes the nearest, and a failure.
template <class T>
requires isCode<T>
void extract(std::istream& in, T& value)
{
    constexpr long long lowest = +std::numeric_limits<T>::lowest();
    constexpr long long highest = +std::numeric_limits<T>::max();
    long long number = 0;
    extract(in, number);
    value = static_cast<T>(std::clamp(number, lowest, highest));
    if (number < lowest || number > highest)
        in.setstate(std::ios_base::failbit);
}

/// As `in >> std::hex >> value >> std::dec`.
template <class T>
void extractHex(std::istream& in, T& value)
{
    if (isPlain(in) && takeReady<T, 16>(in, value))
        return;
    const HexScope hex(in);
    in >> value;
}

/// Takes a separator and so many bytes behind it out of what the buffer has ready; false, and nothing is changed, when
/// that cannot be done.
inline bool takeReadyText(std::istream& in, std::size_t size, std::string& text)
{
    if (!isPlain(in))
        return false;
    std::streambuf& buffer = *in.rdbuf();
    const char* const begin = BufferArea::getBegin(buffer);
    if (static_cast<std::size_t>(BufferArea::getEnd(buffer) - begin) <= size)
        return false;
    text.assign(begin + 1, size);
    BufferArea::takeTo(buffer, begin + 1 + size);
    return true;
}
} // namespace StreamInput
