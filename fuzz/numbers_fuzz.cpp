// SPDX-License-Identifier: MIT
// Numbers of object streams against the formatted calls of the standard streams: the value or the bytes, the state and
// the position are the same, however the stream buffers its bytes.
#include <kel/problem.h>
#include <kel/reader.h>
#include <kel/writer.h>

#include "support/fuzzing.h"
#include "support/streambuffers.h"
#include "support/streams.h"
#include "support/teststatus.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>

namespace
{
/// What an extraction has left behind.
template <class T>
struct Extracted
{
    T value{};
    std::ios_base::iostate state{};
    std::string rest;
};

template <class T>
bool operator==(const Extracted<T>& a, const Extracted<T>& b)
{
    return a.value == b.value && a.state == b.state && a.rest == b.rest;
}

template <class T>
Extracted<T> finish(std::istream& in, T value)
{
    Extracted<T> extracted{value, in.rdstate(), {}};
    in.clear();
    extracted.rest.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return extracted;
}

template <class T>
inline constexpr bool isCode =
    std::is_same_v<T, bool> || std::is_same_v<T, char> || std::is_same_v<T, signed char> ||
    std::is_same_v<T, unsigned char> || std::is_same_v<T, wchar_t> || std::is_same_v<T, char16_t>;

template <class T>
Extracted<T> extractFormatted(const std::string& bytes)
{
    std::istringstream in(bytes);
    T value = 1;
    if constexpr (isCode<T>)
    {
        constexpr long lowest = std::numeric_limits<T>::lowest();
        constexpr long highest = std::numeric_limits<T>::max();
        long number = 0;
        in >> number;
        value = static_cast<T>(std::clamp(number, lowest, highest));
        if (number != std::clamp(number, lowest, highest))
            in.setstate(std::ios_base::failbit);
    }
    else
        in >> value;
    return finish(in, value);
}

/// The Reader that reads from one stream after the other.
class NumberReader
{
public:
    template <class T>
    static Extracted<T> extract(std::istream& in)
    {
        Reader& reader = getReader();
        std::istream* const previous = reader.set(&in);
        T value = 1;
        std::string message;
        try
        {
            reader.read(value);
        }
        catch (const Problem& problem)
        {
            message = problem.getMessage().toUtf8();
        }
        reader.set(previous);
        EXPECT_PROPERTY(message == (in.fail() ? "Invalid stream" : in.eof() ? "Premature end of file" : ""));
        return finish(in, value);
    }

private:
    static Reader& getReader()
    {
        static std::istringstream in(getPreamble());
        static Reader reader(in, "Test", false);
        return reader;
    }
};

template <class T>
void expectReading(const std::string& bytes)
{
    const Extracted<T> expected = extractFormatted<T>(bytes);
    std::istringstream in(bytes);
    EXPECT_PROPERTY(NumberReader::extract<T>(in) == expected);
    DrippingBuffer buffer(bytes);
    std::istream dripping(&buffer);
    EXPECT_PROPERTY(NumberReader::extract<T>(dripping) == expected);
}

/// The Writer that writes one number after the other.
class NumberWriter
{
public:
    template <class T>
    static std::string format(T value, std::streamsize precision)
    {
        static std::ostringstream out;
        static Writer writer(out, "Test", false);
        out.str("");
        out.precision(precision);
        writer.write(value);
        return out.str();
    }
};

/// Whether the value has so many digits for sure: an integer has all, next to 0 there are fewer.
template <class T>
bool hasDigits(T value, std::streamsize precision)
{
    if constexpr (std::is_integral_v<T>)
        return true;
    else
        return precision <= std::numeric_limits<T>::digits10 &&
               (value == 0 || std::abs(value) > 10 * std::numeric_limits<T>::min());
}

template <class T>
void expectWriting(const std::string& bytes, std::streamsize precision)
{
    T value{};
    std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
    std::ostringstream out;
    out.precision(precision);
    out << value << ' ';
    const std::string text = NumberWriter::format(value, precision);
    EXPECT_PROPERTY(text == out.str());
    if (text.find_first_of("in") != std::string::npos) // infinities and what is no number are for nobody to read
        return;
    std::istringstream in(text);
    const Extracted<T> extracted = NumberReader::extract<T>(in);
    EXPECT_PROPERTY(extracted.rest == " " || extracted.state == std::ios_base::failbit);
    if (extracted.state == std::ios_base::goodbit && hasDigits(extracted.value, precision))
        EXPECT_PROPERTY(NumberWriter::format(extracted.value, precision) == text);
}

template <class T>
void expectBoth(const std::string& bytes, std::streamsize precision)
{
    expectReading<T>(bytes);
    expectWriting<T>(bytes, precision);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static TestStatus status;
    Input input(data, size);
    const char type = input.takeByte();
    const std::streamsize precision = static_cast<unsigned char>(input.takeByte()) % 20;
    const std::string bytes = input.takeRest();
    switch (type)
    {
    case 'b':
        expectReading<bool>(bytes);
        break;
    case 'c':
        expectReading<char>(bytes);
        expectReading<unsigned char>(bytes);
        break;
    case 'w':
        expectReading<wchar_t>(bytes);
        expectReading<char16_t>(bytes);
        break;
    case 's':
        expectBoth<short>(bytes, precision);
        expectBoth<unsigned short>(bytes, precision);
        break;
    case 'i':
        expectBoth<int>(bytes, precision);
        break;
    case 'u':
        expectBoth<unsigned>(bytes, precision);
        break;
    case 'l':
        expectBoth<long>(bytes, precision);
        break;
    case 'm':
        expectBoth<unsigned long>(bytes, precision);
        break;
    case 'f':
        expectBoth<float>(bytes, precision);
        break;
    case 'L':
        expectReading<long double>(bytes);
        break;
    default:
        expectBoth<double>(bytes, precision);
    }
    return 0;
}
