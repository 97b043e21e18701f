// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Blocks from a pool like that of the keys.
#include "support/poolrows.h"

#include <kel/pool.h>

namespace
{
class Blocks
{
public:
    void* newBlock() { return m_pool.newObject(); }
    void deleteBlock(void* block) { m_pool.deleteObject(block); }
    void clear() { m_pool.clear(); }

private:
    /// Pools stay registered until exit, so there is one for all.
    static Pool& getPool()
    {
        static Pool pool("Benchmark", sizeof(unsigned), Pool::Chunk10000);
        return pool;
    }

    Pool& m_pool = getPool();
};

const bool registered = bench::PoolRows<Blocks>::add("libkel");
} // namespace
