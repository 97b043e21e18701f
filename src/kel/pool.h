// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/kelapi.h>

#include <cstddef>
#include <iosfwd>
#include <string>

/// Hands out memory blocks of one size, cut from large chunks, for a class whose objects come and go in great numbers.
///
///     Pool& getPool()
///     {
///         static Pool pool("Point", sizeof(Point), Pool::Chunk1000);
///         return pool;
///     }
///
/// A pool lives until the process exits: its destructor gives back neither chunks nor the list of free blocks and
/// leaves the pool in the register that infoAll() reports, so that objects destroyed still later can be given back.
/// Blocks lie one behind the other from the start of a chunk, which is aligned for any standard type.
class KEL_API Pool
{
public:
    /// Objects per chunk.
    enum ChunkSize
    {
        Chunk10,
        Chunk100,
        Chunk1000,
        Chunk10000,
        Chunk100000
    };

    /// The memory of `count` blocks, at the head of a list of older chunks, all of which it owns.
    class KEL_API Chunk
    {
    public:
        /// Pushes the addresses of the blocks onto the stack, in increasing order. Takes over the next chunk unless it
        /// throws.
        template <class Stack>
        Chunk(Chunk* next, unsigned count, unsigned objectSize, Stack& freeStack);
        Chunk(const Chunk&) = delete;
        Chunk& operator=(const Chunk&) = delete;
        ~Chunk();

        /// The older chunk, null for the oldest.
        const Chunk* getNext() const;
        /// The size of its memory in bytes.
        std::size_t getBytes() const;

    private:
        friend class Pool;

        Chunk(unsigned count, unsigned objectSize)
            : m_bytes(std::size_t{count} * objectSize),
              m_memory(new char[m_bytes])
        {
        }

        Chunk* m_next = nullptr;
        std::size_t m_bytes;
        char* m_memory;
    };

    /// Registers an empty pool; memory for blocks of `objectSize` bytes is first taken by newObject().
    Pool(const char* name, unsigned objectSize, ChunkSize chunkSize);
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;
    ~Pool();

    /// The block freed last, otherwise the highest one of the newest chunk that was never handed out, otherwise the
    /// highest of a new chunk. Constant time except for the chunk.
    /// When memory runs out the pool is as it was.
    void* newObject()
    {
        if (m_top != m_free)
            return *--m_top;
        if (m_freshCount == 0) [[unlikely]]
            addChunk();
        return m_fresh + std::size_t{m_objectSize} * --m_freshCount;
    }

    /// Takes a block back. Neither that it came from this pool nor that it is not free yet is checked. Never fails.
    void deleteObject(void* p) noexcept
    {
        if (m_top == m_limit) [[unlikely]]
            makeRoom();
        *m_top++ = p;
    }

    /// Gives all chunks back: every block handed out before becomes invalid, the pool is as new.
    void clear();

    /// Writes "<name>: sizeof = <bytes>, chunks = <count>, bytes = <bytes>" and a newline; returns the bytes of all
    /// chunks.
    unsigned info(std::ostream& os) const;

    /// Writes the lines of all pools in the order of their construction, then "Total bytes = <bytes>" and two newlines.
    static void infoAll(std::ostream& os);

private:
    void addChunk();
    void makeRoom();
    std::size_t getRoom() const { return static_cast<std::size_t>(m_limit - m_free); }
    void moveFree(std::size_t room);

    // The stack of free blocks. It has room for all that there are, so that they can always be given back. Those at its
    // bottom that were never handed out are not written down: they are what is left at the start of the newest chunk.
    void** m_free = nullptr;
    void** m_top = nullptr;
    void** m_limit = nullptr;
    char* m_fresh = nullptr;
    std::size_t m_freshCount = 0;
    std::string m_name;
    unsigned m_objectSize;
    unsigned m_chunkSize;
    Chunk* m_chunks = nullptr;
    std::size_t m_blockCount = 0;
};

template <class Stack>
Pool::Chunk::Chunk(Chunk* next, unsigned count, unsigned objectSize, Stack& freeStack) : Chunk(count, objectSize)
{
    for (unsigned i = 0; i < count; ++i)
        freeStack.push(m_memory + std::size_t{i} * objectSize);
    m_next = next;
}
