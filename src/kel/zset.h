// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

/// A set of `T*` in the order of their addresses. Nothing that it points to is owned or looked at.
///
/// The first two elements are kept in the set itself, so that the many small sets cost no allocation; from the third
/// on the elements are in sorted blocks of bounded size, which keeps insertion and removal fast in any order however
/// large the set grows. A change of the set invalidates its iterators.
template <class T>
class zset
{
    using Block = std::vector<T*>;
    using Blocks = std::vector<Block>;

public:
    /// Gives the elements as `T*` in ascending order.
    class const_iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T*;
        using difference_type = std::ptrdiff_t;
        using pointer = T* const*;
        using reference = T* const&;

        const_iterator() = default;

        reference operator*() const { return *m_element; }

        const_iterator& operator++()
        {
            if (++m_element == m_blockEnd && m_block != m_lastBlock)
                enter(m_block + 1);
            return *this;
        }

        const_iterator operator++(int)
        {
            const const_iterator before = *this;
            ++*this;
            return before;
        }

        bool operator==(const const_iterator& other) const { return m_element == other.m_element; }

    private:
        friend class zset;

        explicit const_iterator(pointer element) : m_element(element) {}

        const_iterator(const Block* block, const Block* lastBlock) : m_lastBlock(lastBlock) { enter(block); }

        void enter(const Block* block)
        {
            m_block = block;
            m_element = block->data();
            m_blockEnd = m_element + block->size();
        }

        pointer m_element = nullptr;
        pointer m_blockEnd = nullptr;
        const Block* m_block = nullptr;
        const Block* m_lastBlock = nullptr;
    };

    using iterator = const_iterator;
    using value_type = T*;

    zset() = default;

    zset(const zset& other)
        : m_few{other.m_few[0], other.m_few[1]},
          m_many(other.m_many ? std::make_unique<Blocks>(*other.m_many) : nullptr),
          m_size(other.m_size)
    {
    }

    zset(zset&& other) noexcept { swap(other); }

    zset& operator=(zset other) noexcept
    {
        swap(other);
        return *this;
    }

    ~zset() = default;

    /// Adds the element; true if it was not there yet. When memory runs out the set is as it was.
    bool insert(T* element)
    {
        const bool inserted = m_many ? insertInBlock(element) : insertInFew(element);
        m_size += inserted;
        return inserted;
    }

    /// Removes the element; false if it was not there, which is no error. Allocates nothing.
    bool erase(T* element)
    {
        const bool erased = m_many ? eraseFromBlock(element) : eraseFromFew(element);
        m_size -= erased;
        return erased;
    }

    bool has(T* element) const
    {
        if (!m_many)
            return std::find(m_few, fewEnd(), element) != fewEnd();
        const Block& block = (*m_many)[blockIndexFor(element)];
        return std::binary_search(block.begin(), block.end(), element, std::less<T*>());
    }

    /// Copies the elements in their order to `out`, which has room for size() of them.
    void copyTo(T** out) const
    {
        if (!m_many)
        {
            std::copy(m_few, fewEnd(), out);
            return;
        }
        for (const Block& block : *m_many)
            out = std::copy(block.begin(), block.end(), out);
    }

    /// Copies the first elements behind a given one, which need not be there, but no more than `room`.
    /// @return how many there were
    unsigned copyAfter(const T* element, T** out, unsigned room) const
    {
        unsigned count = 0;
        for (auto next = begin(); next != end() && count < room; ++next)
        {
            if (std::less<const T*>()(element, *next))
                out[count++] = *next;
        }
        return count;
    }

    unsigned size() const { return m_size; }
    bool empty() const { return m_size == 0; }

    const_iterator begin() const
    {
        return m_many ? const_iterator(&m_many->front(), &m_many->back()) : const_iterator(m_few);
    }

    const_iterator end() const
    {
        return const_iterator(m_many ? m_many->back().data() + m_many->back().size() : fewEnd());
    }

private:
    // Shifting within the few is written for two.
    static constexpr unsigned s_few = 2;

    // Large enough that a million elements have some thousand blocks, small enough that moving half a block costs
    // less than finding the place.
    static constexpr std::size_t s_blockLimit = 512;

    T* const* fewEnd() const { return m_few + m_size; }

    bool insertInFew(T* element)
    {
        unsigned index = 0;
        while (index < m_size && std::less<T*>()(m_few[index], element))
            ++index;
        if (index < m_size && m_few[index] == element)
            return false;
        if (m_size == s_few)
            moveToBlocks(element, index);
        else
        {
            m_few[1] = m_few[0];
            m_few[index] = element;
        }
        return true;
    }

    void moveToBlocks(T* element, std::size_t index)
    {
        Block block;
        block.reserve(2 * s_few);
        block.assign(m_few, m_few + s_few);
        block.insert(block.begin() + static_cast<std::ptrdiff_t>(index), element);
        auto blocks = std::make_unique<Blocks>();
        blocks->push_back(std::move(block));
        m_many = std::move(blocks);
    }

    bool eraseFromFew(T* element)
    {
        unsigned index = 0;
        while (index < m_size && m_few[index] != element)
            ++index;
        if (index == m_size)
            return false;
        if (index == 0)
            m_few[0] = m_few[1];
        return true;
    }

    /// The only block that can hold the element: the last one that does not begin after it, or the first.
    std::size_t blockIndexFor(T* element) const
    {
        const auto beginsAfter = [](T* value, const Block& block) { return std::less<T*>()(value, block.front()); };
        const auto next = std::upper_bound(m_many->begin() + 1, m_many->end(), element, beginsAfter);
        return static_cast<std::size_t>(next - m_many->begin()) - 1;
    }

    bool insertInBlock(T* element)
    {
        const std::size_t index = blockIndexFor(element);
        Block& block = (*m_many)[index];
        const auto place = std::lower_bound(block.begin(), block.end(), element, std::less<T*>());
        if (place != block.end() && *place == element)
            return false;
        if (block.size() < s_blockLimit)
        {
            block.insert(place, element);
            return true;
        }
        split(index);
        return insertInBlock(element);
    }

    void split(std::size_t index)
    {
        Block& lower = (*m_many)[index];
        const auto middle = static_cast<std::ptrdiff_t>(lower.size() / 2);
        Block upper(lower.begin() + middle, lower.end());
        m_many->insert(m_many->begin() + static_cast<std::ptrdiff_t>(index) + 1, std::move(upper));
        (*m_many)[index].resize(static_cast<std::size_t>(middle));
    }

    bool eraseFromBlock(T* element)
    {
        const std::size_t index = blockIndexFor(element);
        Block& block = (*m_many)[index];
        const auto place = std::lower_bound(block.begin(), block.end(), element, std::less<T*>());
        if (place == block.end() || *place != element)
            return false;
        block.erase(place);
        if (block.empty())
            m_many->erase(m_many->begin() + static_cast<std::ptrdiff_t>(index));
        if (m_many->empty())
            m_many.reset();
        return true;
    }

    void swap(zset& other) noexcept
    {
        std::swap(m_few, other.m_few);
        std::swap(m_many, other.m_many);
        std::swap(m_size, other.m_size);
    }

    T* m_few[s_few] = {};
    /// Null while the elements are in m_few; otherwise no block is empty.
    std::unique_ptr<Blocks> m_many;
    unsigned m_size = 0;
};
