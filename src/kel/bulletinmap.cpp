// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/bulletinmap.h>

#include <algorithm>
#include <utility>

namespace
{
// Large enough that a million entries have some thousand blocks, small enough that moving half a block costs about as
// much as finding the place.
constexpr unsigned blockLimit = 256;
constexpr unsigned firstCapacity = 4;

bool isUnused(const BulletinMap::Entry& entry)
{
    return entry.second == nullptr;
}

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

/// The entry of the number or, without one, the place where it belongs.
///
/// Numbers are distinct, so an entry stands no further from either end of the block than its number is from the number
/// there. Where the keys of a board were made in one go this is the very place; gaps leave little to search.
BulletinMap::Entry* BulletinMap::Block::find(unsigned number) const
{
    if (number <= first->first)
        return first;
    const std::size_t fromFirst = number - first->first;
    if (fromFirst < size() && first[fromFirst].first == number)
        return first + fromFirst;
    const unsigned lastNumber = last[-1].first;
    if (lastNumber < number)
        return last;
    const std::size_t fromLast = std::size_t{lastNumber - number} + 1;
    Entry* const begin = fromLast < size() ? last - fromLast : first;
    Entry* const end = first + std::min(fromFirst, size());
    const auto isBefore = [number](const Entry& entry) { return entry.first < number; };
    return begin + countBefore(begin, static_cast<std::size_t>(end - begin), isBefore);
}

void BulletinMap::Block::append(Entry entry)
{
    *last++ = entry;
    ++used;
}

/// Moves the entries on that side of the place where there are fewer, if there is room.
void BulletinMap::Block::insert(Entry entry)
{
    Entry* const place = find(entry.first);
    const bool isInUpperHalf = last - place <= place - first;
    if (hasRoomBehind() && (isInUpperHalf || !hasRoomBefore()))
    {
        std::move_backward(place, last, last + 1);
        ++last;
        *place = entry;
    }
    else
    {
        std::move(first, place, first - 1);
        --first;
        place[-1] = entry;
    }
    ++used;
}

void BulletinMap::Block::dropUnused() noexcept
{
    last = std::remove_if(first, last, isUnused);
}

/// At least one entry must be in use.
void BulletinMap::Block::dropUnusedEnds() noexcept
{
    while (isUnused(*first))
        ++first;
    while (isUnused(last[-1]))
        --last;
}

/// Leaves all room behind the entries.
void BulletinMap::Block::moveToFront() noexcept
{
    last = std::move(first, last, storage.get());
    first = storage.get();
}

void BulletinMap::Block::grow()
{
    Block larger(2 * capacity);
    larger.last = std::copy(first, last, larger.first);
    larger.used = used;
    *this = std::move(larger);
}

BulletinMap::BulletinMap() = default;

BulletinMap::~BulletinMap() = default;

Bulletin* BulletinMap::find(unsigned number) const
{
    if (empty())
        return nullptr;
    const Block& block = m_blocks[findBlock(number)];
    const Entry* const entry = block.find(number);
    return entry != block.last && entry->first == number ? entry->second : nullptr;
}

BulletinMap::const_iterator BulletinMap::after(unsigned number) const
{
    if (empty())
        return end();
    const Block* const block = &m_blocks[findBlock(number)];
    const Entry* place = block->find(number);
    while (place != block->last && (isUnused(*place) || place->first == number))
        ++place;
    const_iterator next(*this, block + (place == block->last));
    if (place != block->last)
        next.enterAt(block, place);
    return next;
}

bool BulletinMap::insert(unsigned number, Bulletin* bulletin)
{
    if (empty() || m_blocks.back().last[-1].first < number)
    {
        ++m_changes;
        append({number, bulletin});
        return true;
    }
    const std::size_t index = findBlock(number);
    Block& block = m_blocks[index];
    Entry* const entry = block.find(number);
    if (entry == block.last || entry->first != number)
    {
        ++m_changes;
        insertInBlock(index, {number, bulletin});
        return true;
    }
    if (!isUnused(*entry))
        return false;
    entry->second = bulletin;
    ++block.used;
    ++m_size;
    ++m_changes;
    return true;
}

Bulletin* BulletinMap::erase(unsigned number) noexcept
{
    if (empty())
        return nullptr;
    const std::size_t index = findBlock(number);
    Block& block = m_blocks[index];
    Entry* const entry = block.find(number);
    if (entry == block.last || entry->first != number || isUnused(*entry))
        return nullptr;
    Bulletin* const bulletin = std::exchange(entry->second, nullptr);
    --block.used;
    --m_size;
    ++m_changes;
    tidyUp(index);
    return bulletin;
}

void BulletinMap::clear() noexcept
{
    m_firsts.clear();
    m_blocks.clear();
    m_size = 0;
    ++m_changes;
}

/// The only block that can hold the number: the last one that does not begin after it, or the first.
std::size_t BulletinMap::findBlock(unsigned number) const
{
    const auto doesNotBeginAfter = [number](unsigned first) { return first <= number; };
    return countBefore(m_firsts.data() + 1, m_firsts.size() - 1, doesNotBeginAfter);
}

void BulletinMap::append(Entry entry)
{
    if (empty())
        insertBlock(0, takeBlock(firstCapacity), entry.first);
    else if (!m_blocks.back().hasRoomBehind())
        makeRoomBehind(entry.first);
    m_blocks.back().append(entry);
    ++m_size;
}

/// Full blocks stay full: what is appended is seldom followed by something in between.
void BulletinMap::makeRoomBehind(unsigned number)
{
    Block& block = m_blocks.back();
    if (block.capacity == blockLimit)
        insertBlock(m_blocks.size(), takeBlock(blockLimit), number);
    else if (block.size() > block.capacity / 2)
        block.grow();
    else
        block.moveToFront();
}

void BulletinMap::insertInBlock(std::size_t index, Entry entry)
{
    if (m_blocks[index].isFull())
    {
        makeRoomIn(index);
        index = findBlock(entry.first);
    }
    m_blocks[index].insert(entry);
    ++m_size;
}

/// Takes no more storage as long as half of the block is free.
void BulletinMap::makeRoomIn(std::size_t index)
{
    Block& block = m_blocks[index];
    block.dropUnused();
    if (block.size() <= block.capacity / 2)
        return;
    if (block.capacity < blockLimit)
        block.grow();
    else
        split(index);
}

/// Moves the upper half of a block without unused entries into a block of its own.
void BulletinMap::split(std::size_t index)
{
    const unsigned kept = m_blocks[index].used / 2;
    Block upper = takeBlock(blockLimit);
    upper.last = std::copy(m_blocks[index].first + kept, m_blocks[index].last, upper.first);
    upper.used = m_blocks[index].used - kept;
    const unsigned first = upper.first->first;
    insertBlock(index + 1, std::move(upper), first);
    m_blocks[index].last = m_blocks[index].first + kept;
    m_blocks[index].used = kept;
}

/// To be called after an entry of the block went out of use.
void BulletinMap::tidyUp(std::size_t index) noexcept
{
    Block& block = m_blocks[index];
    if (block.used == 0)
        return eraseBlock(index);
    block.dropUnusedEnds();
    if (block.used < block.size() / 2)
        block.dropUnused();
}

BulletinMap::Block BulletinMap::takeBlock(unsigned capacity)
{
    if (m_spare.capacity < capacity)
        return Block(capacity);
    return std::exchange(m_spare, Block());
}

void BulletinMap::insertBlock(std::size_t index, Block block, unsigned first)
{
    reserveOneMore(m_firsts);
    reserveOneMore(m_blocks);
    const auto offset = static_cast<std::ptrdiff_t>(index);
    m_firsts.insert(m_firsts.begin() + offset, first);
    m_blocks.insert(m_blocks.begin() + offset, std::move(block));
}

void BulletinMap::eraseBlock(std::size_t index) noexcept
{
    const auto offset = static_cast<std::ptrdiff_t>(index);
    m_firsts.erase(m_firsts.begin() + offset);
    m_spare = std::move(m_blocks[index]);
    m_spare.last = m_spare.first = m_spare.storage.get();
    m_blocks.erase(m_blocks.begin() + offset);
}
