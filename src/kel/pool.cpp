// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/pool.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <stack>
#include <utility>
#include <vector>

namespace
{
unsigned objectsPerChunk(Pool::ChunkSize chunkSize)
{
    static constexpr unsigned counts[] = {10, 100, 1000, 10000, 100000};
    return counts[chunkSize];
}

std::vector<Pool*>& allPools()
{
    static std::vector<Pool*> pools;
    return pools;
}
} // namespace

class Pool::FreeStack : public std::stack<void*, std::vector<void*>>
{
public:
    // Grows at least twofold, so that many small chunks do not cost a move of the stack each.
    void reserve(std::size_t blocks)
    {
        if (blocks > c.capacity())
            c.reserve(std::max(blocks, 2 * c.capacity()));
    }
};

const Pool::Chunk* Pool::Chunk::getNext() const
{
    return m_next;
}

std::size_t Pool::Chunk::getBytes() const
{
    return m_bytes;
}

Pool::Chunk::~Chunk()
{
    delete[] m_memory;
    // One by one, since the list may be longer than a recursion can be deep.
    while (m_next != nullptr)
    {
        Chunk* const next = std::exchange(m_next, m_next->m_next);
        next->m_next = nullptr;
        delete next;
    }
}

Pool::Pool(const char* name, unsigned objectSize, ChunkSize chunkSize)
    : m_free(nullptr),
      m_name(name),
      m_objectSize(objectSize),
      m_chunkSize(objectsPerChunk(chunkSize))
{
    auto freeStack = std::make_unique<FreeStack>();
    allPools().push_back(this);
    m_free = freeStack.release();
}

Pool::~Pool() = default;

void* Pool::newObject()
{
    if (m_free->empty())
        addChunk();
    void* const block = m_free->top();
    m_free->pop();
    return block;
}

void Pool::deleteObject(void* p) noexcept
{
    m_free->push(p);
}

void Pool::clear()
{
    auto freeStack = std::make_unique<FreeStack>();
    delete std::exchange(m_free, freeStack.release());
    delete std::exchange(m_chunks, nullptr);
    m_blockCount = 0;
}

unsigned Pool::info(std::ostream& os) const
{
    unsigned chunks = 0;
    std::size_t bytes = 0;
    for (const Chunk* chunk = m_chunks; chunk != nullptr; chunk = chunk->getNext())
    {
        ++chunks;
        bytes += chunk->getBytes();
    }
    // Numbers as plain text: the stream's own format and locale are the caller's.
    os << m_name + ": sizeof = " + std::to_string(m_objectSize) + ", chunks = " + std::to_string(chunks) +
              ", bytes = " + std::to_string(bytes) + "\n";
    return static_cast<unsigned>(bytes);
}

void Pool::infoAll(std::ostream& os)
{
    unsigned total = 0;
    for (const Pool* pool : allPools())
        total += pool->info(os);
    os << "Total bytes = " + std::to_string(total) + "\n\n";
}

void Pool::addChunk()
{
    m_free->reserve(m_blockCount + m_chunkSize);
    m_chunks = new Chunk(m_chunks, m_chunkSize, m_objectSize, *m_free);
    m_blockCount += m_chunkSize;
}
