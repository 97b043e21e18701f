// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/pool.h>

#include <algorithm>
#include <ostream>
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
    : m_name(name),
      m_objectSize(objectSize),
      m_chunkSize(objectsPerChunk(chunkSize))
{
    allPools().push_back(this);
}

Pool::~Pool() = default;

void Pool::clear()
{
    delete[] m_free;
    m_free = m_top = m_limit = nullptr;
    m_freshCount = m_blockCount = 0;
    delete std::exchange(m_chunks, nullptr);
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
    // Grows at least twofold, so that many small chunks do not cost a move of the stack each.
    const std::size_t blocks = m_blockCount + m_chunkSize;
    const std::size_t room = getRoom();
    if (blocks > room)
        moveFree(std::max(blocks, 2 * room));
    auto* const chunk = new Chunk(m_chunkSize, m_objectSize);
    chunk->m_next = m_chunks;
    m_chunks = chunk;
    m_fresh = chunk->m_memory;
    m_freshCount = m_chunkSize;
    m_blockCount = blocks;
}

// There is no room only for what is not of this pool, or is free already.
void Pool::makeRoom()
{
    moveFree(2 * getRoom() + 1);
}

void Pool::moveFree(std::size_t room)
{
    auto* const free = new void*[room];
    m_top = std::copy(m_free, m_top, free);
    delete[] m_free;
    m_free = free;
    m_limit = free + room;
}
