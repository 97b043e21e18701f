// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include "benchmarks.h"

#include <string>
#include <vector>

namespace bench
{
/// The row about making and destroying small objects, written once for all contenders, which give a class with
///
///     using Object;
///     static Object* make();
///     static void destroy(Object* object);
///
/// All objects of a size are made first and then destroyed in the same order, as a document does.
template <class Maker>
class BulletinRows
{
public:
    static bool add(const std::string& contender) { return bench::add("bulletin", contender, objects, makeAndDestroy); }

private:
    static void makeAndDestroy(benchmark::State& state)
    {
        std::vector<typename Maker::Object*> made(static_cast<size_t>(state.range(0)));
        const auto work = [&made]
        {
            for (auto& object : made)
                object = Maker::make();
            benchmark::ClobberMemory();
            for (auto& object : made)
                Maker::destroy(object);
        };
        warmUp(work);
        for (auto _ : state)
            work();
        state.SetItemsProcessed(state.iterations() * state.range(0));
    }
};
} // namespace bench
