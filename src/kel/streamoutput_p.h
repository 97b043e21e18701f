// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include "bufferarea_p.h"
#include "hexscope_p.h"
#include "realformat_p.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <type_traits>

/// Output of numbers and bytes past the formatting of std::ostream, which would take most of the time of a save.
///
/// What fits into the room of the stream buffer is put there; such output cannot fail. Whatever is not so simple is
/// left to the stream itself: the end of the room, a stream with other settings or in another state, numbers of other
/// kinds.
namespace StreamOutput
{
/// Whether formatted output comes down to putting plain characters into the stream buffer.
inline bool isPlain(const std::ios& out)
{
    constexpr auto deviating = std::ios_base::basefield | std::ios_base::floatfield | std::ios_base::showbase |
                               std::ios_base::showpoint | std::ios_base::showpos | std::ios_base::uppercase |
                               std::ios_base::unitbuf;
    return out.good() && (out.flags() & deviating) == std::ios_base::dec && out.width() == 0 && !out.tie();
}

/// Where so many characters can be put, or null.
inline char* findRoom(const std::ostream& out, std::size_t count)
{
    return isPlain(out) && BufferArea::getRoom(*out.rdbuf()) >= count ? BufferArea::putBegin(*out.rdbuf()) : nullptr;
}

/// Writes one character.
inline void putChar(std::ostream& out, char c)
{
    if (char* const room = findRoom(out, 1))
    {
        *room = c;
        BufferArea::putTo(*out.rdbuf(), room + 1);
    }
    else
        out << c;
}

/// The number that stands for a value of an arithmetic type: a character is its code, bool is 0 or 1.
template <class T>
constexpr auto asNumber(T value)
{
    if constexpr (std::is_integral_v<T>)
        // Promotion makes an integer of the size of int or larger of all these types.
        return +value;
    else
        return value;
}

/// Room for any number and the separator behind it.
inline constexpr std::size_t numberRoom = RealFormat::room;

/// The end of a number that was put into the room, or null for a number that is left to the stream.
template <class Integer>
requires std::is_integral_v<Integer>
char* format(char* room, Integer number, const std::ios& /*out*/)
{
    return std::to_chars(room, room + numberRoom, number).ptr;
}

inline char* format(char* room, double number, const std::ios& out)
{
    const std::streamsize precision = out.precision();
    if (!std::isfinite(number) || precision < 0 || precision > RealFormat::maxPrecision)
        return nullptr;
    return RealFormat::put(room, number, static_cast<int>(precision));
}

inline char* format(char* /*room*/, long double /*number*/, const std::ios& /*out*/)
{
    return nullptr;
}

/// Writes a number and the separator.
template <class T>
void putNumber(std::ostream& out, T value, char separator)
{
    const auto number = asNumber(value);
    char* const room = findRoom(out, numberRoom);
    if (char* const end = room ? format(room, number, out) : nullptr)
    {
        *end = separator;
        BufferArea::putTo(*out.rdbuf(), end + 1);
    }
    else
        out << number << separator;
}

/// Writes a length and so many bytes, each with a separator.
inline void putCounted(std::ostream& out, const char* bytes, unsigned length, char separator)
{
    char* const room = findRoom(out, numberRoom + length);
    if (!room)
    {
        putNumber(out, length, separator);
        out.write(bytes, length);
        putChar(out, separator);
        return;
    }
    char* end = format(room, length, out);
    *end++ = separator;
    std::copy_n(bytes, length, end);
    end[length] = separator;
    BufferArea::putTo(*out.rdbuf(), end + length + 1);
}

/// The length of a text in UTF-8, or no length where a code is no character.
inline bool getUtf8Length(const std::wstring& text, std::size_t& length)
{
    length = 0;
    for (const wchar_t character : text)
    {
        const std::uint32_t code = std::char_traits<wchar_t>::to_int_type(character);
        if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
            return false;
        length += 1u + (code > 0x7F) + (code > 0x7FF) + (code > 0xFFFF);
    }
    return true;
}

inline char* putUtf8(char* out, std::uint32_t code)
{
    const auto putRest = [&out, code](unsigned shift) { *out++ = static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code <= 0x7F)
    {
        *out++ = static_cast<char>(code);
        return out;
    }
    if (code <= 0x7FF)
        *out++ = static_cast<char>(0xC0 | code >> 6);
    else if (code <= 0xFFFF)
    {
        *out++ = static_cast<char>(0xE0 | code >> 12);
        putRest(6);
    }
    else
    {
        *out++ = static_cast<char>(0xF0 | code >> 18);
        putRest(12);
        putRest(6);
    }
    putRest(0);
    return out;
}

/// Writes the length of a text in UTF-8 and the text, each with a separator; false, and nothing is written, when there
/// is no room for it or a code is no character.
inline bool putText(std::ostream& out, const std::wstring& text, char separator)
{
    std::size_t length = 0;
    if (!getUtf8Length(text, length))
        return false;
    char* const room = findRoom(out, numberRoom + length);
    if (!room)
        return false;
    char* end = format(room, length, out);
    *end++ = separator;
    for (const wchar_t character : text)
        end = putUtf8(end, std::char_traits<wchar_t>::to_int_type(character));
    *end++ = separator;
    BufferArea::putTo(*out.rdbuf(), end);
    return true;
}

/// Writes a number in hexadecimal and the separator. The stream is in decimal afterwards.
inline void putHex(std::ostream& out, unsigned number, char separator)
{
    if (char* const room = findRoom(out, numberRoom))
    {
        char* const end = std::to_chars(room, room + numberRoom, number, 16).ptr;
        *end = separator;
        BufferArea::putTo(*out.rdbuf(), end + 1);
    }
    else
    {
        const HexScope hex(out);
        out << number << separator;
    }
}
} // namespace StreamOutput
