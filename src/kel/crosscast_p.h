// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// dynamic_cast between two bases of the same objects that remembers what it found for the classes lately met: a stream
/// holds a great many objects of few classes, and the test takes as long as writing a number.
///
/// It must not live longer than the modules whose classes it has met.
template <class To, class From>
class CrossCast
{
public:
    To* operator()(From& from)
    {
        const void* const table = getVirtualTable(from);
        Class& found = m_classes[(reinterpret_cast<std::uintptr_t>(table) >> 4) % m_classes.size()];
        if (found.table != table)
            found = learn(from, table);
        if (!found.isPossible)
            return nullptr;
        return reinterpret_cast<To*>(reinterpret_cast<char*>(&from) + found.offset);
    }

private:
    struct Class
    {
        const void* table = nullptr;
        std::ptrdiff_t offset = 0; // of the one base from the other, in bytes
        bool isPossible = false;
    };

    /// What tells classes apart, and the places of a base within one: the pointer to the virtual table, which stands
    /// first in every polymorphic object (Itanium C++ ABI, "Virtual Table Layout").
    static const void* getVirtualTable(const From& from)
    {
        const void* table = nullptr;
        std::memcpy(&table, static_cast<const void*>(&from), sizeof(table));
        return table;
    }

    static Class learn(From& from, const void* table)
    {
        const To* const to = dynamic_cast<To*>(&from);
        if (!to)
            return {table, 0, false};
        return {table, reinterpret_cast<const char*>(to) - reinterpret_cast<const char*>(&from), true};
    }

    std::array<Class, 16> m_classes;
};
