// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/badstream.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <istream>
#include <iterator>
#include <limits>
#include <locale>
#include <system_error>
#include <type_traits>

/// Extraction of numbers past the formatting of std::istream, which would take most of the time of opening a file.
///
/// Value, position, stream state and exceptions are those of formatted extraction in the classic locale. Only the
/// common number (plain digits that end inside the stream) is converted here; every other is left to the standard
/// conversion, which is given the characters that were taken from the stream meanwhile once more.
namespace NumberInput
{
using Traits = std::char_traits<char>;

/// Characters taken from a stream buffer, given once more, and then those that follow in the buffer.
class Replay
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = char;

    /// The end.
    Replay() = default;
    Replay(const char* first, const char* last, std::streambuf& rest) : m_first(first), m_last(last), m_rest(&rest) {}

    char operator*() const { return m_first == m_last ? Traits::to_char_type(m_rest->sgetc()) : *m_first; }

    Replay& operator++()
    {
        if (m_first == m_last)
            m_rest->sbumpc();
        else
            ++m_first;
        return *this;
    }

    Replay operator++(int)
    {
        Replay before(*this);
        ++*this;
        return before;
    }

    friend bool operator==(const Replay& left, const Replay& right) { return left.isAtEnd() == right.isAtEnd(); }

private:
    bool isAtEnd() const
    {
        return m_first == m_last && (!m_rest || Traits::eq_int_type(m_rest->sgetc(), Traits::eof()));
    }

    const char* m_first = nullptr;
    const char* m_last = nullptr;
    std::streambuf* m_rest = nullptr;
};

class ReplayConversion : public std::num_get<char, Replay>
{
public:
    // Not deleted by a locale, since none holds it.
    ReplayConversion() : std::num_get<char, Replay>(1) {}
};

/// The characters of one number, as they are taken from the stream buffer. Never takes more than the standard
/// conversion would.
class Token
{
public:
    /// Skips white space.
    explicit Token(std::streambuf& buffer) : m_buffer(buffer), m_next(buffer.sgetc())
    {
        while (m_next == ' ' || (m_next >= '\t' && m_next <= '\r'))
            m_next = m_buffer.snextc();
    }

    void takeInteger()
    {
        if (m_next == '-')
            take();
        takeDigits();
    }

    void takeReal()
    {
        if (m_next == '-')
            take();
        if (!isDigit())
            return;
        takeDigits();
        if (m_next == '.')
            take();
        takeDigits();
        if (m_next == 'e' || m_next == 'E')
            takeExponent();
    }

    void takeHex()
    {
        while (isHexDigit() && take())
        {
        }
    }

    bool empty() const { return m_size == 0; }

    /// Whether the number is cut off here, by the end of the stream or of the room, or goes on in a way that is not
    /// looked at ("0x").
    bool isOpen() const
    {
        return m_size == sizeof(m_text) || m_next == 'x' || m_next == 'X' || Traits::eq_int_type(m_next, Traits::eof());
    }

    /// Converts the whole token; false when it is no number of the type, or not in its range.
    template <class T, class... Base>
    bool convert(T& value, Base... base) const
    {
        T converted{};
        const auto [end, error] = std::from_chars(m_text, m_text + m_size, converted, base...);
        if (error != std::errc() || end != m_text + m_size)
            return false;
        value = converted;
        return true;
    }

    Replay replay() const { return Replay(m_text, m_text + m_size, m_buffer); }

private:
    bool isDigit() const { return m_next >= '0' && m_next <= '9'; }

    bool isHexDigit() const
    {
        return isDigit() || (m_next >= 'a' && m_next <= 'f') || (m_next >= 'A' && m_next <= 'F');
    }

    void takeDigits()
    {
        while (isDigit() && take())
        {
        }
    }

    void takeExponent()
    {
        take();
        if (m_next == '-' || m_next == '+')
            take();
        takeDigits();
    }

    bool take()
    {
        if (m_size == sizeof(m_text))
            return false;
        m_text[m_size++] = Traits::to_char_type(m_next);
        m_next = m_buffer.snextc();
        return true;
    }

    std::streambuf& m_buffer;
    Traits::int_type m_next;
    std::size_t m_size = 0;
    char m_text[40];
};

/// Whether formatted extraction comes down to taking plain characters from the stream buffer.
inline bool isPlain(const std::ios& in)
{
    constexpr auto deviating = std::ios_base::basefield | std::ios_base::skipws;
    return in.good() && (in.flags() & deviating) == (std::ios_base::dec | std::ios_base::skipws) && !in.tie();
}

/// Fits a number into a smaller type: one that is out of range becomes the nearest, and a failure.
template <class T, class From>
void narrow(From from, T& value, std::ios_base::iostate& state)
{
    constexpr From lowest = std::numeric_limits<T>::lowest();
    constexpr From highest = std::numeric_limits<T>::max();
    if (from < lowest || from > highest)
        state |= std::ios_base::failbit;
    value = static_cast<T>(std::clamp(from, lowest, highest));
}

/// Lets the standard conversion have a token and what follows it in the stream.
template <class T>
void convertStandard(const Token& token, std::ios& in, T& value, std::ios_base::iostate& state)
{
    static const ReplayConversion s_conversion;
    // There is none for short and int: std::istream narrows them, too.
    if constexpr (std::is_same_v<T, short> || std::is_same_v<T, int>)
    {
        long wide = 0;
        s_conversion.get(token.replay(), Replay(), in, state, wide);
        narrow(wide, value, state);
    }
    else
        s_conversion.get(token.replay(), Replay(), in, state, value);
}

template <class T>
bool takeAndConvert(Token& token, std::ios& in, T& value, std::ios_base::iostate& state)
{
    if constexpr (std::is_floating_point_v<T>)
        token.takeReal();
    else
        token.takeInteger();
    if (token.empty())
        return false;
    if (token.isOpen() || !token.convert(value))
        convertStandard(token, in, value, state);
    return true;
}

template <class T>
bool takeAndConvertHex(Token& token, std::ios& in, T& value, std::ios_base::iostate& state)
{
    token.takeHex();
    if (token.empty())
        return false;
    if (!token.isOpen() && token.convert(value, 16))
        return true;
    in.setf(std::ios_base::hex, std::ios_base::basefield);
    convertStandard(token, in, value, state);
    in.setf(std::ios_base::dec, std::ios_base::basefield);
    return true;
}

/// Runs one of the two functions above on a plain stream; false when nothing of a number is taken from it.
template <class TakeAndConvert>
bool extractPlain(std::istream& in, const TakeAndConvert& takeAndConvert)
{
    std::ios_base::iostate state = std::ios_base::goodbit;
    try
    {
        Token token(*in.rdbuf());
        if (!takeAndConvert(token, state))
            return false;
    }
    catch (...)
    {
        setBadOrRethrow(in);
        return true;
    }
    if (state != std::ios_base::goodbit)
        in.setstate(state);
    return true;
}

template <class T>
void extractCode(std::istream& in, T& value);

/// Types whose formatted extraction would read a character, or a word, and not a number.
template <class T>
inline constexpr bool isCode =
    std::is_integral_v<T> && !std::is_same_v<T, short> && !std::is_same_v<T, unsigned short> &&
    !std::is_same_v<T, int> && !std::is_same_v<T, unsigned> && !std::is_same_v<T, long> &&
    !std::is_same_v<T, unsigned long> && !std::is_same_v<T, long long> && !std::is_same_v<T, unsigned long long>;

/// As `in >> value`; of a bool or a character, the number that stands for it, fitted into its type.
template <class T>
void extract(std::istream& in, T& value)
{
    if constexpr (isCode<T>)
        extractCode(in, value);
    else
    {
        const auto take = [&](Token& token, std::ios_base::iostate& state)
        { return takeAndConvert(token, in, value, state); };
        if (!isPlain(in) || !extractPlain(in, take))
            in >> value;
    }
}

/// Left to the stream: its text is converted in no faster way.
inline void extract(std::istream& in, long double& value)
{
    in >> value;
}

template <class T>
void extractCode(std::istream& in, T& value)
{
    long number = 0;
    extract(in, number);
    std::ios_base::iostate state = std::ios_base::goodbit;
    narrow(number, value, state);
    if (state != std::ios_base::goodbit)
        in.setstate(state);
}

/// As `in >> std::hex >> value >> std::dec`.
template <class T>
void extractHex(std::istream& in, T& value)
{
    const auto take = [&](Token& token, std::ios_base::iostate& state)
    { return takeAndConvertHex(token, in, value, state); };
    if (!isPlain(in) || !extractPlain(in, take))
        in >> std::hex >> value >> std::dec;
}
} // namespace NumberInput
