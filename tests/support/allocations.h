// SPDX-License-Identifier: MIT
// Counts the allocations of the program and lets them fail on demand. It replaces the allocation functions of the
// whole program: include it in one source file of an executable only.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace allocations
{
constexpr std::size_t s_unlimited = std::numeric_limits<std::size_t>::max();

inline std::size_t s_count = 0;
inline std::size_t s_left = s_unlimited;

/// The number of allocations since the start of the program.
inline std::size_t getCount()
{
    return s_count;
}

inline void* allocate(std::size_t size)
{
    if (s_left == 0)
        throw std::bad_alloc();
    if (s_left != s_unlimited)
        --s_left;
    ++s_count;
    if (void* const memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

/// While it lives, only that many further allocations succeed.
class Limit
{
public:
    explicit Limit(std::size_t count) { s_left = count; }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;
    ~Limit() { s_left = s_unlimited; }
};

/// Tries the action with no allocation allowed, then with one, two, ... until it succeeds, and calls `onFailure` after
/// every failure. Returns the number of failures.
template <class Action, class OnFailure>
std::size_t failEachInTurn(Action action, OnFailure onFailure)
{
    for (std::size_t allowed = 0;; ++allowed)
    {
        try
        {
            const Limit limit(allowed);
            action();
            return allowed;
        }
        catch (const std::bad_alloc&)
        {
        }
        onFailure();
    }
}
} // namespace allocations

// Replacements cannot be inline.
// NOLINTBEGIN(misc-definitions-in-headers)
void* operator new(std::size_t size)
{
    return allocations::allocate(size);
}

void* operator new[](std::size_t size)
{
    return allocations::allocate(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try
    {
        return allocations::allocate(size);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    try
    {
        return allocations::allocate(size);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}
// NOLINTEND(misc-definitions-in-headers)
