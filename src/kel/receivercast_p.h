// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/receiver.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

/// Where the classes of observers keep one receiver interface, as far as they were asked for it lately.
///
/// The dynamic type test takes several times as long as all else in a notification, and its outcome is the same for all
/// objects of a class. What was found is forgotten whenever a receiver dies: a module that is unloaded has no living
/// receivers, so that a class that is later found at the same address is tested anew.
class ReceiverCastCache
{
public:
    /// In place of an offset. No interface stands where the observer does: both have a virtual table of their own.
    static constexpr std::ptrdiff_t s_none = 0;

    /// What is known of a class.
    struct alignas(32) Entry
    {
        const void* table;     ///< the virtual table
        std::uint64_t age;     ///< of the caches, when it was tested
        std::ptrdiff_t offset; ///< of the interface from the observer, in bytes
        std::ptrdiff_t direct; ///< the same if update is that of Receiver, otherwise none
    };

    /// Starts all caches afresh.
    static void forgetAll() noexcept { ++s_age; }

    /// Valid until the next look-up for the same interface.
    template <class ReceiverInterface>
    static const Entry& find(Observer& observer)
    {
        // One cache for each interface; constant initialised, therefore without a guard.
        static constinit ReceiverCastCache cache;
        const void* const table = getVirtualTable(observer);
        Entry& entry = cache.m_entries[getSlot(table)];
        if (entry.table != table || entry.age != s_age) [[unlikely]]
            return learn<ReceiverInterface>(observer, entry);
        return entry;
    }

    template <class ReceiverInterface>
    static ReceiverInterface& getInterface(Observer& observer, std::ptrdiff_t offset)
    {
        return *reinterpret_cast<ReceiverInterface*>(reinterpret_cast<char*>(&observer) + offset);
    }

    /// What tells classes apart: the pointer to its virtual table stands first in every polymorphic object (Itanium C++
    /// ABI, "Virtual Table Layout"). Unlike the type's identity it is another one while the object is being constructed
    /// or destroyed as part of a larger one, when its bases may stand elsewhere.
    static const void* getVirtualTable(const Observer& observer)
    {
        const void* table;
        std::memcpy(&table, static_cast<const void*>(&observer), sizeof table);
        return table;
    }

private:
    static constexpr std::size_t s_size = 64;

    // Not inlined: the many registers that the test takes would be saved for every message.
    template <class ReceiverInterface>
    [[gnu::noinline]] static const Entry& learn(Observer& observer, Entry& entry)
    {
        auto* const found = dynamic_cast<ReceiverInterface*>(&observer);
        const std::ptrdiff_t offset = getOffset(observer, found);
        const std::ptrdiff_t direct = isPlainReceiver(observer) ? offset : s_none;
        entry = {getVirtualTable(observer), s_age, offset, direct};
        return entry;
    }

    static std::ptrdiff_t getOffset(const Observer& observer, const void* found)
    {
        return found == nullptr ? s_none : static_cast<const char*>(found) - reinterpret_cast<const char*>(&observer);
    }

    /// Whether the class is a Receiver that does not override update.
    static bool isPlainReceiver(const Observer& observer);

    // Tables are some words long and aligned to words.
    static std::size_t getSlot(const void* table) { return (reinterpret_cast<std::uintptr_t>(table) >> 4) % s_size; }

    static inline std::uint64_t s_age = 1;

    Entry m_entries[s_size] = {};
};

/// The receiver as one that listens to a kind of message, or null when its class does not implement that interface.
template <class ReceiverInterface>
ReceiverInterface* receiverCast(Receiver& receiver)
{
    const std::ptrdiff_t offset = ReceiverCastCache::find<ReceiverInterface>(receiver).offset;
    if (offset == ReceiverCastCache::s_none)
        return nullptr;
    return &ReceiverCastCache::getInterface<ReceiverInterface>(receiver, offset);
}
