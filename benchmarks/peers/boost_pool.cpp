// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Blocks from a boost::pool with chunks of the same number of blocks.
#include "support/poolrows.h"

#include <boost/pool/pool.hpp>

namespace
{
class Blocks
{
public:
    void* newBlock() { return m_pool.malloc(); }
    void deleteBlock(void* block) { m_pool.free(block); }
    void clear() { m_pool.purge_memory(); }

private:
    static constexpr size_t s_blocksPerChunk = 10000;

    boost::pool<> m_pool{sizeof(unsigned), s_blocksPerChunk, s_blocksPerChunk};
};

const bool registered = bench::PoolRows<Blocks>::add("boost_pool");
} // namespace
