// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <streambuf>

/// The characters that a stream buffer has ready to be taken, and the room it has for characters to be put.
///
/// Taking from and putting into these areas is all that a stream does most of the time, but through one call for each
/// character. The areas are protected, and a derived class may name the functions that tell of them.
class BufferArea : private std::streambuf
{
public:
    BufferArea() = delete;

    static const char* getBegin(const std::streambuf& buffer) { return (buffer.*&BufferArea::gptr)(); }
    static const char* getEnd(const std::streambuf& buffer)
    {
        const char* const begin = getBegin(buffer);
        return begin + std::min((buffer.*&BufferArea::egptr)() - begin, s_most);
    }

    /// Takes the characters up to this one, which stands between the begin and the end.
    static void takeTo(std::streambuf& buffer, const char* end)
    {
        (buffer.*&BufferArea::gbump)(static_cast<int>(end - getBegin(buffer)));
    }

    static std::size_t getRoom(const std::streambuf& buffer)
    {
        return static_cast<std::size_t>(std::min((buffer.*&BufferArea::epptr)() - putBegin(buffer), s_most));
    }
    static char* putBegin(const std::streambuf& buffer) { return (buffer.*&BufferArea::pptr)(); }

    /// Leaves the characters in the room, which were written there from its begin up to this one.
    static void putTo(std::streambuf& buffer, const char* end)
    {
        (buffer.*&BufferArea::pbump)(static_cast<int>(end - putBegin(buffer)));
    }

private:
    /// A buffer may have more ready than the functions that take and put can count.
    static constexpr std::ptrdiff_t s_most = std::numeric_limits<int>::max();
};
