// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include "benchmarks.h"

#include <malloc.h>

#include <string>
#include <vector>

namespace bench
{
/// The rows about memory for keys, written once for all contenders. Blocks have four bytes, which are written to.
///
///     void* newBlock();
///     void deleteBlock(void* block);
///     void clear();                      // gives all memory back; every block was deleted before
///
/// "Fresh" takes blocks from a pool without any memory; "reused" gives all blocks back and takes as many again.
template <class Blocks>
class PoolRows
{
public:
    static bool add(const std::string& contender)
    {
        return bench::add("pool_fresh", contender, objects, fresh) &&
               bench::add("pool_reused", contender, objects, reused);
    }

private:
    static constexpr unsigned s_content = 4711;

    static void take(Blocks& blocks, std::vector<void*>& taken)
    {
        for (void*& block : taken)
            *static_cast<unsigned*>(block = blocks.newBlock()) = s_content;
        benchmark::ClobberMemory();
    }

    static void giveBack(Blocks& blocks, const std::vector<void*>& taken)
    {
        for (void* block : taken)
            blocks.deleteBlock(block);
    }

    static void fresh(benchmark::State& state)
    {
        std::vector<void*> taken(static_cast<size_t>(state.range(0)));
        Blocks blocks;
        const auto forget = [&]
        {
            giveBack(blocks, taken);
            blocks.clear();
            // Whether the heap keeps what it gets back depends on what was freed before.
            malloc_trim(0);
        };
        warmUp(
            [&]
            {
                take(blocks, taken);
                forget();
            });
        for (auto _ : state)
        {
            take(blocks, taken);
            state.PauseTiming();
            forget();
            state.ResumeTiming();
        }
        state.SetItemsProcessed(state.iterations() * state.range(0));
    }

    static void reused(benchmark::State& state)
    {
        std::vector<void*> taken(static_cast<size_t>(state.range(0)));
        Blocks blocks;
        take(blocks, taken);
        for (auto _ : state)
        {
            giveBack(blocks, taken);
            take(blocks, taken);
        }
        state.SetItemsProcessed(state.iterations() * state.range(0));
        giveBack(blocks, taken);
        blocks.clear();
    }
};
} // namespace bench
