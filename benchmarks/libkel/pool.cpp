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
    void* newBlock() { return pool().newObject(); }
    void deleteBlock(void* block) { pool().deleteObject(block); }
    void clear() { pool().clear(); }

private:
    /// Pools stay registered until exit, so there is one for all.
    static Pool& pool()
    {
        static Pool pool("Benchmark", sizeof(unsigned), Pool::Chunk10000);
        return pool;
    }
};

const bool registered = bench::PoolRows<Blocks>::add("libkel");
} // namespace
