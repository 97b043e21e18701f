// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>

/// The library's vector: a block of default-constructed elements, of which the first size() are in use.
///
/// Counts are 32 bits wide. Elements are assigned into place, so T needs a default constructor and assignment; they
/// are destroyed with the block and not before. An operation that throws (for memory, or because a copy of an element
/// throws) leaves the array as it was, but for erase() where moving an element throws. Iterators are pointers, valid
/// until the block is replaced.
template <class T>
class Array
{
public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    Array() = default;

    /// The capacity of a copy is the size of its source.
    Array(const Array& other) : m_capacity(other.m_size), m_block(copyOf(other).release()), m_size(other.m_size) {}

    Array(Array&& other) noexcept { swap(other); }

    Array& operator=(const Array& other)
    {
        if (this != &other)
            *this = Array(other);
        return *this;
    }

    Array& operator=(Array&& other) noexcept
    {
        Array taken(std::move(other));
        swap(taken);
        return *this;
    }

    virtual ~Array() { delete[] m_block; }

    /// Appends a copy of the value, which may be an element of this array. A full array doubles its capacity first
    /// (0 becomes 2).
    /// @throws std::length_error when the doubled capacity would not fit into 32 bits
    void push_back(const T& value)
    {
        if (m_size == m_capacity)
            growAndAppend(value);
        else
            m_block[m_size] = value;
        ++m_size;
    }

    /// Removes the first element equal to the value by moving the later ones down. The caller knows that the value is
    /// present: where it is not, the last element is dropped all the same. The array must not be empty.
    void erase(const T& value)
    {
        T* const found = std::find(begin(), end(), value);
        if (found != end())
            std::move(found + 1, end(), found);
        --m_size;
    }

    /// Sets the size to 0; capacity and block stay.
    void clear() { m_size = 0; }

    /// Makes the capacity exactly `capacity`, which may be less than before: elements past it are cut off.
    void reserve(unsigned capacity)
    {
        std::unique_ptr<T[]> block = makeBlock(capacity);
        const unsigned kept = std::min(m_size, capacity);
        transferTo(block.get(), kept);
        adopt(std::move(block), capacity);
        m_size = kept;
    }

    /// The element at the index, which is not checked.
    T& operator[](std::size_t index) { return m_block[index]; }
    const T& operator[](std::size_t index) const { return m_block[index]; }

    unsigned size() const { return m_size; }
    unsigned capacity() const { return m_capacity; }
    bool empty() const { return m_size == 0; }

    T* begin() { return m_block; }
    T* end() { return m_block + m_size; }
    const T* begin() const { return m_block; }
    const T* end() const { return m_block + m_size; }

private:
    static std::unique_ptr<T[]> makeBlock(unsigned capacity)
    {
        return std::unique_ptr<T[]>(capacity == 0 ? nullptr : new T[capacity]);
    }

    static std::unique_ptr<T[]> copyOf(const Array& other)
    {
        std::unique_ptr<T[]> block = makeBlock(other.m_size);
        for (unsigned i = 0; i < other.m_size; ++i)
            block[i] = other.m_block[i];
        return block;
    }

    // An element that can be moved without risk is moved; any other is copied, so that a failure half-way leaves the
    // old block whole.
    void transferTo(T* block, unsigned count)
    {
        for (unsigned i = 0; i < count; ++i)
        {
            if constexpr (std::is_nothrow_move_assignable_v<T>)
                block[i] = std::move(m_block[i]);
            else
                block[i] = m_block[i];
        }
    }

    void growAndAppend(const T& value)
    {
        const unsigned capacity = grownCapacity();
        std::unique_ptr<T[]> block = makeBlock(capacity);
        // Before the elements are moved away, since the value may be one of them.
        block[m_size] = value;
        transferTo(block.get(), m_size);
        adopt(std::move(block), capacity);
    }

    unsigned grownCapacity() const
    {
        if (m_capacity > std::numeric_limits<unsigned>::max() / 2)
            throw std::length_error("Array::push_back");
        return m_capacity == 0 ? 2 : 2 * m_capacity;
    }

    void adopt(std::unique_ptr<T[]> block, unsigned capacity) noexcept
    {
        delete[] m_block;
        m_block = block.release();
        m_capacity = capacity;
    }

    void swap(Array& other) noexcept
    {
        std::swap(m_capacity, other.m_capacity);
        std::swap(m_block, other.m_block);
        std::swap(m_size, other.m_size);
    }

    unsigned m_capacity = 0;
    T* m_block = nullptr;
    unsigned m_size = 0;
};
