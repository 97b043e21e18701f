// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/receiver.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

/// Where the classes of receivers keep one receiver interface, as far as they were asked for it lately.
///
/// The dynamic type test takes several times as long as all else in a notification, and its outcome is the same for all
/// objects of a class. What was found is forgotten whenever a receiver dies: a module that is unloaded has no living
/// receivers, so that a class that is later found at the same address is tested anew.
class ReceiverCastCache
{
public:
    /// Starts all caches afresh.
    static void forgetAll() noexcept { ++s_age; }

    template <class ReceiverInterface>
    static ReceiverInterface* cast(Receiver& receiver)
    {
        // One cache for each interface; constant initialised, therefore without a guard.
        static constinit ReceiverCastCache cache;
        const void* const table = getVirtualTable(receiver);
        Entry& entry = cache.m_entries[getSlot(table)];
        if (entry.table != table || entry.age != s_age) [[unlikely]]
            entry = {table, s_age, getOffset(receiver, dynamic_cast<ReceiverInterface*>(&receiver))};
        if (entry.offset == s_none)
            return nullptr;
        return reinterpret_cast<ReceiverInterface*>(reinterpret_cast<char*>(&receiver) + entry.offset);
    }

private:
    struct Entry
    {
        const void* table;
        std::uint64_t age;
        std::ptrdiff_t offset; ///< of the interface from the receiver, in bytes
    };

    static constexpr std::size_t s_size = 64;
    static constexpr std::ptrdiff_t s_none = PTRDIFF_MIN;

    /// What tells classes apart: the pointer to its virtual table stands first in every polymorphic object (Itanium C++
    /// ABI, "Virtual Table Layout"). Unlike the type's identity it is another one while the object is being constructed
    /// or destroyed as part of a larger one, when its bases may stand elsewhere.
    static const void* getVirtualTable(const Receiver& receiver)
    {
        const void* table;
        std::memcpy(&table, static_cast<const void*>(&receiver), sizeof table);
        return table;
    }

    // Tables are some words long and aligned to words.
    static std::size_t getSlot(const void* table) { return (reinterpret_cast<std::uintptr_t>(table) >> 4) % s_size; }

    static std::ptrdiff_t getOffset(const Receiver& receiver, const void* found)
    {
        return found == nullptr ? s_none : static_cast<const char*>(found) - reinterpret_cast<const char*>(&receiver);
    }

    static inline std::uint64_t s_age = 1;

    Entry m_entries[s_size] = {};
};

/// The receiver as one that listens to a kind of message, or null when its class does not implement that interface.
template <class ReceiverInterface>
ReceiverInterface* receiverCast(Receiver& receiver)
{
    return ReceiverCastCache::cast<ReceiverInterface>(receiver);
}
