// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/badstream.h>

#include <charconv>
#include <cmath>
#include <cstddef>
#include <ostream>
#include <type_traits>

/// Output of numbers and bytes past the formatting of std::ostream, which would take most of the time of a save.
///
/// Bytes, stream state, failures and exceptions are those of the formatted calls: where a stream is not in its plain
/// state, those are made.
namespace NumberOutput
{
/// Whether formatted output comes down to putting plain characters into the stream buffer.
inline bool isPlain(const std::ios& out)
{
    constexpr auto deviating = std::ios_base::basefield | std::ios_base::floatfield | std::ios_base::showbase |
                               std::ios_base::showpoint | std::ios_base::showpos | std::ios_base::uppercase |
                               std::ios_base::unitbuf;
    return out.good() && (out.flags() & deviating) == std::ios_base::dec && out.width() == 0 && !out.tie();
}

/// Puts bytes into the buffer of a plain stream.
inline void putPlain(std::ostream& out, const char* bytes, std::streamsize count)
{
    bool isPut = false;
    try
    {
        isPut = out.rdbuf()->sputn(bytes, count) == count;
    }
    catch (...)
    {
        setBadOrRethrow(out);
        return;
    }
    if (!isPut)
        out.setstate(std::ios_base::badbit);
}

/// Writes one character.
inline void putChar(std::ostream& out, char c)
{
    if (!isPlain(out))
    {
        out << c;
        return;
    }
    bool isPut = false;
    try
    {
        isPut = out.rdbuf()->sputc(c) != std::char_traits<char>::eof();
    }
    catch (...)
    {
        setBadOrRethrow(out);
        return;
    }
    if (!isPut)
        out.setstate(std::ios_base::badbit);
}

/// Writes bytes as they are.
inline void putBytes(std::ostream& out, const char* bytes, std::streamsize count)
{
    if (isPlain(out))
        putPlain(out, bytes, count);
    else
        out.write(bytes, count);
}

/// The number that stands for a value of an arithmetic type: a character is its code, bool is 0 or 1.
template <class T>
constexpr auto asNumber(T value)
{
    if constexpr (std::is_floating_point_v<T>)
        return value;
    else if constexpr (sizeof(T) < sizeof(int))
        return static_cast<int>(value);
    else if constexpr (std::is_same_v<T, wchar_t> || std::is_same_v<T, char32_t>)
        return static_cast<std::conditional_t<std::is_signed_v<T>, int, unsigned>>(value);
    else
        return value;
}

// Long enough for every integer, and for a double with as many digits as tell all doubles apart.
using Digits = char[40];
inline constexpr std::streamsize maxPrecision = 17;

/// The end of the characters put into `digits`, or null for what is left to the stream.
template <class Integer>
requires std::is_integral_v<Integer>
char* format(Digits& digits, Integer number, const std::ios& /*out*/)
{
    return std::to_chars(digits, digits + sizeof(digits), number).ptr;
}

inline char* format(Digits& digits, double number, const std::ios& out)
{
    const std::streamsize precision = out.precision();
    if (!std::isfinite(number) || precision < 0 || precision > maxPrecision)
        return nullptr;
    return std::to_chars(digits, digits + sizeof(digits), number, std::chars_format::general,
                         static_cast<int>(precision))
        .ptr;
}

inline char* format(Digits& /*digits*/, long double /*number*/, const std::ios& /*out*/)
{
    return nullptr;
}

/// Writes a number and the separator.
template <class T>
void putNumber(std::ostream& out, T value, char separator)
{
    const auto number = asNumber(value);
    Digits digits;
    char* const end = isPlain(out) ? format(digits, number, out) : nullptr;
    if (end)
        putPlain(out, digits, end - digits);
    else
        out << number;
    putChar(out, separator);
}

/// Writes a number in hexadecimal and the separator. The stream is in decimal afterwards.
inline void putHex(std::ostream& out, unsigned number, char separator)
{
    Digits digits;
    if (isPlain(out))
        putPlain(out, digits, std::to_chars(digits, digits + sizeof(digits), number, 16).ptr - digits);
    else
        out << std::hex << number << std::dec;
    putChar(out, separator);
}
} // namespace NumberOutput
