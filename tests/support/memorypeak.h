// SPDX-License-Identifier: MIT
// Measures how much memory the program takes at its peak. It replaces the allocation functions of the whole program:
// include it in one source file of an executable only.
#pragma once

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace memorypeak
{
inline std::size_t s_taken = 0;
inline std::size_t s_most = 0;

inline void* take(std::size_t size)
{
    void* const memory = std::malloc(std::max<std::size_t>(size, 1));
    if (!memory)
        throw std::bad_alloc();
    s_taken += malloc_usable_size(memory);
    s_most = std::max(s_most, s_taken);
    return memory;
}

inline void giveBack(void* memory)
{
    if (memory)
        s_taken -= malloc_usable_size(memory);
    std::free(memory);
}

/// Measures from its construction on.
class Meter
{
public:
    Meter() : m_before(s_taken) { s_most = s_taken; }

    /// The most bytes that were taken at once beyond those at the start.
    std::size_t getPeak() const { return s_most - m_before; }

private:
    std::size_t m_before;
};
} // namespace memorypeak

// Replacements cannot be inline.
// NOLINTBEGIN(misc-definitions-in-headers)
void* operator new(std::size_t size)
{
    return memorypeak::take(size);
}

void* operator new[](std::size_t size)
{
    return memorypeak::take(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return memorypeak::take(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return memorypeak::take(size);
}

void operator delete(void* memory) noexcept
{
    memorypeak::giveBack(memory);
}

void operator delete[](void* memory) noexcept
{
    memorypeak::giveBack(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    memorypeak::giveBack(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    memorypeak::giveBack(memory);
}
// NOLINTEND(misc-definitions-in-headers)
