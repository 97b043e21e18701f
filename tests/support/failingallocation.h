// SPDX-License-Identifier: MIT
// Lets chosen allocations fail and counts the blocks that are alive. It replaces the allocation functions of the whole
// program: include it in one source file of an executable only.
#pragma once

#include <kel/problem.h>

#include "tally.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

/// Which allocations fail after the ones that succeed: one of them, or all.
enum class Failing
{
    Once,
    FromThenOn
};

/// While it lives, the allocation with the given number fails, the next one being number 1; with Failing::FromThenOn
/// all after it as well. Only one may live at a time.
class FailingAllocation
{
public:
    FailingAllocation(std::size_t number, Failing failing)
    {
        s_failing = failing;
        s_left = number;
        s_hasFailed = false;
    }
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation() { s_left = 0; }

    /// Whether the latest one came so far that it had to fail.
    static bool hasFailed() { return s_hasFailed; }
    /// The number of blocks allocated and not freed.
    static std::size_t getLiveBlocks() { return s_liveBlocks; }

    static void* allocate(std::size_t size)
    {
        if (s_left != 0 && isDue())
        {
            s_hasFailed = true;
            throw std::bad_alloc();
        }
        void* const block = std::malloc(size == 0 ? 1 : size);
        if (block == nullptr)
            throw std::bad_alloc();
        ++s_liveBlocks;
        return block;
    }

    static void free(void* block) noexcept
    {
        if (block == nullptr)
            return;
        --s_liveBlocks;
        std::free(block);
    }

    static inline Tally s_failures{"failing allocations"};

private:
    static bool isDue()
    {
        if (--s_left != 0)
            return false;
        if (s_failing == Failing::FromThenOn)
            s_left = 1;
        return true;
    }

    static inline std::size_t s_liveBlocks = 0;
    static inline std::size_t s_left = 0; ///< up to the one that fails; 0: none does
    static inline Failing s_failing = Failing::Once;
    static inline bool s_hasFailed = false;
};

/// Acts on a new state once for every allocation that can fail in the action, and does it for both ways of failing.
///
/// `make` returns a state; `act` acts on it with the failure in force; `check` gets the state and whether the action
/// threw, and proves what became of it. Only a Problem or std::bad_alloc may come out of the action, and after the
/// state is gone not one block more may be alive than before. Returns the number of failures tried.
template <class Make, class Act, class Check>
std::size_t failEachAllocation(Make make, Act act, Check check)
{
    std::size_t failures = 0;
    const auto tryOne = [&](std::size_t number, Failing failing)
    {
        auto state = make();
        bool threw = false;
        try
        {
            const FailingAllocation fault(number, failing);
            act(state);
        }
        catch (const Problem&)
        {
            threw = true;
        }
        catch (const std::bad_alloc&)
        {
            threw = true;
        }
        const bool hasFailed = FailingAllocation::hasFailed();
        check(state, threw);
        return hasFailed;
    };
    // What lives as long as the process is made first.
    for (int i = 0; i < 2; ++i)
        tryOne(std::size_t(-1), Failing::Once);
    for (const Failing failing : {Failing::Once, Failing::FromThenOn})
    {
        for (std::size_t number = 1;; ++number)
        {
            SCOPED_TRACE(testing::Message()
                         << "allocation " << number << (failing == Failing::Once ? "" : " and all after it"));
            const std::size_t before = FailingAllocation::getLiveBlocks();
            const bool hasFailed = tryOne(number, failing);
            EXPECT_EQ(FailingAllocation::getLiveBlocks(), before);
            if (!hasFailed)
                break;
            ++failures;
            if (testing::Test::HasFailure())
                return failures;
        }
    }
    FailingAllocation::s_failures.add(failures);
    return failures;
}

// Replacements cannot be inline.
// NOLINTBEGIN(misc-definitions-in-headers)
void* operator new(std::size_t size)
{
    return FailingAllocation::allocate(size);
}

void* operator new[](std::size_t size)
{
    return FailingAllocation::allocate(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try
    {
        return FailingAllocation::allocate(size);
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
        return FailingAllocation::allocate(size);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

void operator delete(void* block) noexcept
{
    FailingAllocation::free(block);
}

void operator delete[](void* block) noexcept
{
    FailingAllocation::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    FailingAllocation::free(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    FailingAllocation::free(block);
}
// NOLINTEND(misc-definitions-in-headers)
