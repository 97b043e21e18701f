// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace bench
{
/// Numbers of pointers in one flat table with open addressing, for the hand-written peer.
class FlatHash
{
public:
    /// Room for `count` pointers; more must not be inserted.
    explicit FlatHash(size_t count)
        : m_slots(std::bit_ceil(count * 2 + 2)),
          m_shift(64 - std::countr_zero(m_slots.size()))
    {
    }

    void insert(const void* pointer, uint32_t number) { find(pointer) = {pointer, number}; }

    /// The number of the pointer, 0 when it was never inserted.
    uint32_t get(const void* pointer) { return find(pointer).m_number; }

private:
    struct Slot
    {
        const void* m_pointer = nullptr;
        uint32_t m_number = 0;
    };

    Slot& find(const void* pointer)
    {
        size_t index = (reinterpret_cast<uintptr_t>(pointer) * 0x9e3779b97f4a7c15u) >> m_shift;
        while (m_slots[index].m_pointer && m_slots[index].m_pointer != pointer)
            index = (index + 1) & (m_slots.size() - 1);
        return m_slots[index];
    }

    std::vector<Slot> m_slots;
    int m_shift;
};
} // namespace bench
