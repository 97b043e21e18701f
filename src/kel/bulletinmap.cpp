// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/bulletinmap.h>

#include <algorithm>

namespace
{
// Large enough that a million entries have some thousand blocks, small enough that moving half a block costs about as
// much as finding the place.
constexpr std::size_t blockLimit = 512;
constexpr std::size_t firstCapacity = 4;

/// How many elements of a sorted run stand before the place that is looked for. Takes no branch that depends on the
/// data: in a random look-up every second one would be mispredicted.
template <class Element, class IsBefore>
std::size_t countBefore(const Element* run, std::size_t size, IsBefore isBefore)
{
    const Element* at = run;
    for (; size > 1; size -= size / 2)
        at += size / 2 * static_cast<std::size_t>(isBefore(at[size / 2 - 1]));
    return static_cast<std::size_t>(at - run) + (size == 1 && isBefore(*at));
}

template <class T>
void reserveOneMore(std::vector<T>& values)
{
    if (values.size() == values.capacity())
        values.reserve(2 * values.size() + 1);
}
} // namespace

BulletinMap::BulletinMap() = default;

BulletinMap::~BulletinMap() = default;

Bulletin* BulletinMap::find(unsigned number) const
{
    if (empty())
        return nullptr;
    const Block& block = m_blocks[findBlock(number)];
    const Entry* const entry = findEntry(block, number);
    return entry != block.last && entry->first == number ? entry->second : nullptr;
}

const BulletinMap::Entry* BulletinMap::after(unsigned number) const
{
    if (empty())
        return nullptr;
    const std::size_t index = findBlock(number);
    const Block& block = m_blocks[index];
    const Entry* entry = findEntry(block, number);
    if (entry != block.last && entry->first == number)
        ++entry;
    if (entry != block.last)
        return entry;
    return index + 1 < m_blocks.size() ? m_blocks[index + 1].first : nullptr;
}

bool BulletinMap::insert(unsigned number, Bulletin* bulletin)
{
    if (empty() || m_blocks.back().last[-1].first < number)
    {
        append({number, bulletin});
        return true;
    }
    const std::size_t index = findBlock(number);
    const Entry* const entry = findEntry(m_blocks[index], number);
    if (entry != m_blocks[index].last && entry->first == number)
        return false;
    insertInBlock(index, {number, bulletin});
    return true;
}

Bulletin* BulletinMap::erase(unsigned number) noexcept
{
    if (empty())
        return nullptr;
    const std::size_t index = findBlock(number);
    Entry* const entry = findEntry(m_blocks[index], number);
    if (entry == m_blocks[index].last || entry->first != number)
        return nullptr;
    Bulletin* const bulletin = entry->second;
    eraseFromBlock(index, entry);
    return bulletin;
}

void BulletinMap::clear() noexcept
{
    m_firsts.clear();
    m_blocks.clear();
    m_size = 0;
}

/// The only block that can hold the number: the last one that does not begin after it, or the first.
std::size_t BulletinMap::findBlock(unsigned number) const
{
    const auto doesNotBeginAfter = [number](unsigned first) { return first <= number; };
    return countBefore(m_firsts.data() + 1, m_firsts.size() - 1, doesNotBeginAfter);
}

/// The entry of the number or, without one, the place where it belongs.
///
/// Numbers are distinct, so an entry stands no further from either end of the block than its number is from the number
/// there. Where the keys of a board were made in one go this is the very place; gaps leave little to search.
BulletinMap::Entry* BulletinMap::findEntry(const Block& block, unsigned number)
{
    Entry* const first = block.first;
    if (number <= first->first)
        return first;
    const std::size_t size = block.size();
    const std::size_t fromFirst = number - first->first;
    if (fromFirst < size && first[fromFirst].first == number)
        return first + fromFirst;
    const unsigned lastNumber = block.last[-1].first;
    if (lastNumber < number)
        return block.last;
    const std::size_t fromLast = std::size_t{lastNumber - number} + 1;
    const std::size_t begin = fromLast < size ? size - fromLast : 0;
    const std::size_t end = std::min(fromFirst, size);
    return first + begin +
           countBefore(first + begin, end - begin, [number](const Entry& entry) { return entry.first < number; });
}

void BulletinMap::append(Entry entry)
{
    if (empty())
        insertBlock(0, nullptr, nullptr, firstCapacity);
    else if (Block& block = m_blocks.back(); !block.hasRoomBehind())
    {
        if (block.capacity < blockLimit)
            grow(block);
        else
            insertBlock(m_blocks.size(), nullptr, nullptr, blockLimit);
    }
    Block& block = m_blocks.back();
    if (block.size() == 0)
        m_firsts.back() = entry.first;
    *block.last++ = entry;
    ++m_size;
}

void BulletinMap::insertInBlock(std::size_t index, Entry entry)
{
    if (m_blocks[index].size() == blockLimit)
    {
        split(index);
        index = findBlock(entry.first);
    }
    Block& block = m_blocks[index];
    if (block.size() == block.capacity)
        grow(block);
    Entry* const place = findEntry(block, entry.first);
    const bool isInUpperHalf = place - block.first >= block.last - place;
    if (block.hasRoomBehind() && (isInUpperHalf || !block.hasRoomBefore()))
    {
        std::move_backward(place, block.last, block.last + 1);
        ++block.last;
        *place = entry;
    }
    else
    {
        std::move(block.first, place, block.first - 1);
        --block.first;
        place[-1] = entry;
    }
    m_firsts[index] = block.first->first;
    ++m_size;
}

/// Makes a block of some entries, all or nothing.
void BulletinMap::insertBlock(std::size_t index, const Entry* first, const Entry* last, std::size_t capacity)
{
    reserveOneMore(m_firsts);
    reserveOneMore(m_blocks);
    std::unique_ptr<Entry[]> storage(new Entry[capacity]);
    Entry* const begin = storage.get();
    Entry* const end = std::copy(first, last, begin);
    const auto offset = static_cast<std::ptrdiff_t>(index);
    m_firsts.insert(m_firsts.begin() + offset, first == last ? 0 : first->first);
    m_blocks.insert(m_blocks.begin() + offset, Block{begin, end, std::move(storage), capacity});
}

/// Moves the upper half of a block into a block of its own.
void BulletinMap::split(std::size_t index)
{
    Entry* const middle = m_blocks[index].first + m_blocks[index].size() / 2;
    insertBlock(index + 1, middle, m_blocks[index].last, blockLimit);
    m_blocks[index].last = middle;
}

/// Makes room behind the entries; more storage is taken only when at least half of it is in use.
void BulletinMap::grow(Block& block)
{
    const std::size_t size = block.size();
    if (size <= block.capacity / 2)
    {
        std::move(block.first, block.last, block.storage.get());
    }
    else
    {
        std::unique_ptr<Entry[]> storage(new Entry[2 * block.capacity]);
        std::copy(block.first, block.last, storage.get());
        block.storage = std::move(storage);
        block.capacity *= 2;
    }
    block.first = block.storage.get();
    block.last = block.first + size;
}

/// Closes the gap from the nearer end.
void BulletinMap::eraseFromBlock(std::size_t index, Entry* entry) noexcept
{
    Block& block = m_blocks[index];
    --m_size;
    if (block.size() == 1)
    {
        m_firsts.erase(m_firsts.begin() + static_cast<std::ptrdiff_t>(index));
        m_blocks.erase(m_blocks.begin() + static_cast<std::ptrdiff_t>(index));
        return;
    }
    if (entry - block.first < block.last - entry)
    {
        std::move_backward(block.first, entry, entry + 1);
        ++block.first;
    }
    else
    {
        std::move(entry + 1, block.last, entry);
        --block.last;
    }
    m_firsts[index] = block.first->first;
}
