// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Numbers of keys, which are 32 bits wide and never 0.
///
/// Every reference that is written looks an object up here, therefore the entries stand in one open-addressed block and
/// not in the nodes of a standard map. Objects are mostly made one after the other, and so their keys are more or less
/// evenly apart: spread over the block by their distance they have a place each, in their own order, and fill it
/// without getting into each other's way. Keys that do crowd somewhere are noticed and then spread in another way.
class NumberTable
{
public:
    struct Result
    {
        std::uint32_t number;
        bool isNew;
    };

    NumberTable() : m_entries(s_smallest) {}

    /// The number of a key, which is `next` if the key is met for the first time.
    Result get(std::uint32_t key, std::uint32_t next)
    {
        std::size_t slot = find(key);
        if (m_entries[slot].key != 0)
            return {m_entries[slot].number, false};
        slot = makeRoom(key, slot);
        m_entries[slot] = {key, next};
        ++m_count;
        noteDistance(key);
        return {next, true};
    }

    std::uint32_t size() const { return m_count; }

    /// Tells that so many keys more will come. Room is made for them when the first have shown how far apart they are.
    void expect(std::size_t count) { m_expected = m_count + count; }

private:
    struct Entry
    {
        std::uint32_t key = 0; // 0: free
        std::uint32_t number = 0;
    };

    /// Ways to spread the keys, from the one that keeps most of their order to the one that works with any keys.
    enum class Spread : std::uint8_t
    {
        ByDistance,
        Even,
        Random
    };

    static constexpr std::size_t s_smallest = 16;

    /// Factors are fixed-point numbers.
    static constexpr std::uint64_t s_one = std::uint64_t{1} << 32;

    /// Entries that a key may have to pass by: more of them are a crowd.
    static constexpr std::size_t s_crowd = 64;
    static constexpr std::size_t s_crowdWhenFull = 16; ///< where there is little room, few will do to make more

    /// Keys that are further apart have something else between them.
    static constexpr std::uint32_t s_furthest = 256;

    /// Entries in a block of this size have shown how far apart keys are.
    static constexpr std::size_t s_telling = 512;

    /// Whether so many entries leave enough of the block free for any keys.
    bool isAiry(std::size_t count) const { return count <= m_entries.size() / 4 * 3; }

    bool hasRoom(std::size_t count) const
    {
        return isAiry(count) || (m_spread != Spread::Random && count <= m_entries.size() / 32 * 31);
    }

    std::size_t getLimit(std::size_t count) const { return isAiry(count) ? s_crowd : s_crowdWhenFull; }

    std::size_t getHome(std::uint32_t key) const { return (key * m_factor >> 32) & (m_entries.size() - 1); }
    std::size_t getNext(std::size_t slot) const { return (slot + 1) & (m_entries.size() - 1); }

    /// Where the key is, or the free slot where it belongs.
    std::size_t find(std::uint32_t key) const
    {
        std::size_t slot = getHome(key);
        while (m_entries[slot].key != key && m_entries[slot].key != 0)
            slot = getNext(slot);
        return slot;
    }

    std::size_t countPassed(std::uint32_t key, std::size_t slot) const
    {
        return (slot - getHome(key)) & (m_entries.size() - 1);
    }

    /// Where a new key belongs, for which this slot was found.
    std::size_t makeRoom(std::uint32_t key, std::size_t slot)
    {
        const std::size_t count = m_count + std::size_t{1};
        const bool isCrowd = m_spread != Spread::Random && countPassed(key, slot) > getLimit(count);
        if (!hasRoom(count) || (isCrowd && !isAiry(count)))
            rebuild(getGrownSize(), Spread::ByDistance);
        else if (isCrowd)
            rebuild(m_entries.size(), getOther(m_spread));
        else
            return slot;
        return find(key);
    }

    std::size_t getGrownSize() const
    {
        std::size_t size = 2 * m_entries.size();
        while (size > s_telling && size / 4 * 3 < m_expected)
            size *= 2;
        return size;
    }

    static Spread getOther(Spread spread) { return spread == Spread::ByDistance ? Spread::Even : Spread::Random; }

    /// Spreads the entries over so many slots in the first way, from this one on, in which they do not crowd.
    void rebuild(std::size_t size, Spread spread)
    {
        std::vector<Entry> spreadOut(size);
        spreadOut.swap(m_entries);
        while (!enterAll(spreadOut, spread))
        {
            spread = getOther(spread);
            m_entries.assign(size, Entry());
        }
    }

    bool enterAll(const std::vector<Entry>& entries, Spread spread)
    {
        m_spread = spread;
        m_factor = getFactor(spread);
        for (const Entry& entry : entries)
        {
            if (entry.key == 0)
                continue;
            const std::size_t slot = find(entry.key);
            if (spread != Spread::Random && countPassed(entry.key, slot) > s_crowd)
                return false;
            m_entries[slot] = entry;
        }
        return true;
    }

    std::uint64_t getFactor(Spread spread) const
    {
        if (spread == Spread::Random)
            return 0x9E3779B97F4A7C15; // the golden ratio: close keys get far apart
        if (spread == Spread::Even || m_nearKeys < m_count / 2)
            return s_one / 2;
        // A little wider, since where there is no gap one displaced key displaces all behind it. There are distances:
        // the first block is full with a dozen keys.
        return (s_one + s_one / 32) * m_nearKeys / m_distances;
    }

    void noteDistance(std::uint32_t key)
    {
        const std::uint32_t distance = key > m_latest ? key - m_latest : m_latest - key;
        m_latest = key;
        if (distance > s_furthest)
            return;
        m_distances += distance;
        ++m_nearKeys;
    }

    std::vector<Entry> m_entries; // as many as a power of two
    std::uint32_t m_count = 0;
    Spread m_spread = Spread::Even;
    std::uint64_t m_factor = s_one / 2; // slots for a distance of 1 between keys

    std::size_t m_expected = 0;

    // What is known about the distance from one new key to the next.
    std::uint32_t m_latest = 0;
    std::uint32_t m_nearKeys = 0;
    std::uint64_t m_distances = 0;
};
