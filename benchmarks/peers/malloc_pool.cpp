// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Blocks from the general heap.
#include "support/poolrows.h"

#include <cstdlib>

namespace
{
class Blocks
{
public:
    void* newBlock() { return std::malloc(sizeof(unsigned)); }
    void deleteBlock(void* block) { std::free(block); }
    void clear() {}
};

const bool registered = bench::PoolRows<Blocks>::add("malloc");
} // namespace
