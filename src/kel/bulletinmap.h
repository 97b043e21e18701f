// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/kelapi.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

class Bulletin;

/// The entries of a board: key number to bulletin, iterated in increasing key number. Owns no bulletin.
///
/// Entries stand sorted in blocks of bounded size, so that a walk runs through memory and a look-up touches little of
/// it. Appending moves nothing: keys are mostly made in increasing order. An entry taken out stays behind as an unused
/// one, until its number comes back or the block has become half empty.
///
/// A walk goes on safely whatever is entered and taken out meanwhile, as observers may do: the next entry is the one
/// with the next number that is there by then.
class KEL_API BulletinMap
{
public:
    /// One entry; reads like a standard pair.
    struct Entry
    {
        using first_type = unsigned;
        using second_type = Bulletin*;

        unsigned first = 0;         ///< key number
        Bulletin* second = nullptr; ///< null in an unused entry, which nobody gets to see

        operator std::pair<unsigned, Bulletin*>() const { return {first, second}; }
        /// As the entries of a standard map, so that one can be made of them.
        operator std::pair<const unsigned, Bulletin*>() const { return {first, second}; }
    };

    class const_iterator;
    using value_type = Entry;

    BulletinMap();
    BulletinMap(const BulletinMap&) = delete;
    BulletinMap& operator=(const BulletinMap&) = delete;
    ~BulletinMap();

    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    const_iterator begin() const;
    const_iterator end() const;

    /// The first entry behind a number.
    const_iterator after(unsigned number) const;

    /// The bulletin under a number, or null.
    Bulletin* find(unsigned number) const;
    /// Enters a bulletin, which must not be null. The entry that was taken out last goes back without memory.
    /// @return false, with nothing changed, when the number is taken. Nothing is changed either when memory runs out.
    bool insert(unsigned number, Bulletin* bulletin);
    /// Takes an entry out.
    /// @return its bulletin, or null when there is none.
    Bulletin* erase(unsigned number) noexcept;
    void clear() noexcept;

private:
    /// A run of entries, the first and the last of them in use, within storage that has room before or behind them.
    struct Block
    {
        /// Without storage.
        Block() = default;
        explicit Block(unsigned entries)
            : storage(new Entry[entries]),
              capacity(entries),
              first(storage.get()),
              last(first)
        {
        }

        std::size_t size() const { return static_cast<std::size_t>(last - first); }
        bool isFull() const { return size() == capacity; }
        bool hasRoomBefore() const { return first != storage.get(); }
        bool hasRoomBehind() const { return last != storage.get() + capacity; }

        Entry* find(unsigned number) const;
        void append(Entry entry);
        void insert(Entry entry);
        void dropUnused() noexcept;
        void dropUnusedEnds() noexcept;
        void moveToFront() noexcept;
        void grow();

        std::unique_ptr<Entry[]> storage;
        unsigned capacity = 0;
        unsigned used = 0;
        Entry* first = nullptr;
        Entry* last = nullptr; ///< past the end
    };

    std::size_t findBlock(unsigned number) const;
    void append(Entry entry);
    void makeRoomBehind(unsigned number);
    void insertInBlock(std::size_t index, Entry entry);
    void makeRoomIn(std::size_t index);
    void split(std::size_t index);
    void tidyUp(std::size_t index) noexcept;
    Block takeBlock(unsigned capacity);
    void insertBlock(std::size_t index, Block block, unsigned first);
    void eraseBlock(std::size_t index) noexcept;

    std::vector<unsigned> m_firsts; ///< no block holds a lower number, but the first; what a look-up searches
    std::vector<Block> m_blocks;    ///< in the same order, none of them empty
    Block m_spare;                  ///< the one that became empty last, if any
    std::size_t m_size = 0;
    std::uint64_t m_changes = 0; ///< how many there were; what walks look at
};

/// Gives the entries of all blocks as one sequence. Keeps a copy of the entry where it stands, which remains what it
/// was when the map is changed.
class BulletinMap::const_iterator
{
public:
    using iterator_category = std::input_iterator_tag;
    using iterator_concept = std::forward_iterator_tag;
    using value_type = Entry;
    using difference_type = std::ptrdiff_t;
    using pointer = const Entry*;
    using reference = const Entry;

    const_iterator() = default;

    reference operator*() const { return m_entry; }
    pointer operator->() const { return &m_entry; }

    const_iterator& operator++()
    {
        if (m_changes != m_map->m_changes) [[unlikely]]
            return *this = m_map->after(m_entry.first);
        if (++m_place == m_last)
            enter(m_block + 1);
        else
            takeNextInUse();
        return *this;
    }

    const_iterator operator++(int)
    {
        const const_iterator before = *this;
        ++*this;
        return before;
    }

    bool operator==(const const_iterator& other) const
    {
        return m_entry.first == other.m_entry.first && isAtEnd() == other.isAtEnd();
    }

private:
    friend class BulletinMap;

    const_iterator(const BulletinMap& map, const Block* block) : m_map(&map), m_changes(map.m_changes) { enter(block); }

    bool isAtEnd() const { return m_entry.second == nullptr; }

    void enter(const Block* block)
    {
        if (block == m_map->m_blocks.data() + m_map->m_blocks.size())
            m_entry = {};
        else
            enterAt(block, block->first);
    }

    void enterAt(const Block* block, const Entry* place)
    {
        m_block = block;
        m_place = place;
        m_last = block->last;
        takeNextInUse();
    }

    // Comes to a stop, since the last entry of a block is in use.
    void takeNextInUse()
    {
        while (m_place->second == nullptr)
            ++m_place;
        m_entry = *m_place;
    }

    Entry m_entry = {}; ///< no bulletin at the end
    const Entry* m_place = nullptr;
    const Entry* m_last = nullptr; ///< past the end of the block
    const Block* m_block = nullptr;
    const BulletinMap* m_map = nullptr;
    std::uint64_t m_changes = 0; ///< of the map, when the place was found
};

inline BulletinMap::const_iterator BulletinMap::begin() const
{
    return const_iterator(*this, m_blocks.data());
}

inline BulletinMap::const_iterator BulletinMap::end() const
{
    return const_iterator();
}
