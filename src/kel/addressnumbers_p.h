// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include "numbertable_p.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

/// Numbers addresses 1, 2, 3 ... in the order in which they are first met. Null has none.
///
/// Those that are near each other and apart by multiples of 8 bytes, as objects are, share a table, in which a key of
/// 32 bits tells them apart: half the size of an address, and half the memory that look-ups run through. A process has
/// few such neighbourhoods (the heap, the stacks, large blocks).
class AddressNumbers
{
public:
    NumberTable::Result get(const void* address)
    {
        const Place place = find(address);
        const NumberTable::Result result = place.numbers.get(place.key, getNext());
        m_count += static_cast<std::uint32_t>(result.isNew);
        return result;
    }

    /// Tells that so many addresses will follow, most of them near this one.
    void expect(const void* address, std::size_t count) { find(address).numbers.expect(count); }

    /// The number that the next address met will get.
    std::uint32_t getNext() const { return m_count + 1; }

private:
    struct Neighbourhood
    {
        std::uint64_t begin;
        NumberTable numbers;
    };

    struct Place
    {
        NumberTable& numbers;
        std::uint32_t key;
    };

    /// Up to this, keys are those of addresses in the neighbourhood: 32 GiB.
    static constexpr std::uint64_t s_maxKey = std::numeric_limits<std::uint32_t>::max();

    /// The low bits come first: an address that is apart by another distance is in no neighbourhood.
    static std::uint64_t getKey(std::uint64_t address, std::uint64_t begin) { return std::rotr(address - begin, 3); }

    Place find(const void* pointer)
    {
        const auto address = reinterpret_cast<std::uintptr_t>(pointer);
        for (Neighbourhood& neighbourhood : m_neighbourhoods)
        {
            const std::uint64_t key = getKey(address, neighbourhood.begin);
            if (key != 0 && key <= s_maxKey)
                return {neighbourhood.numbers, static_cast<std::uint32_t>(key)};
        }
        // The address stands in the middle of its own.
        m_neighbourhoods.push_back({address - s_maxKey / 2 * 8, NumberTable()});
        return {m_neighbourhoods.back().numbers, s_maxKey / 2};
    }

    std::vector<Neighbourhood> m_neighbourhoods;
    std::uint32_t m_count = 0;
};
