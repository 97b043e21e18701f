// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include "benchmarks.h"

#include <fstream>
#include <string>

namespace bench
{
/// The row about building the body of a form with one file in it, written once for all contenders, which give a
/// function that takes the path of the file and returns the number of characters of the body. Its size is that of the
/// file.
class FormRows
{
public:
    using Build = size_t (*)(const std::string& path);

    static bool add(const std::string& contender, Build build)
    {
        return bench::add("form", contender, {1'000'000, 10'000'000, 100'000'000},
                          [build](benchmark::State& state) { measure(state, build); });
    }

private:
    static std::string file(int64_t size)
    {
        const std::filesystem::path path = folder() / ("form-" + std::to_string(size));
        std::ofstream out(path, std::ios::binary);
        for (int64_t at = 0; at < size; ++at)
            out.put(static_cast<char>(at * 7 % 256));
        return path.string();
    }

    static void measure(benchmark::State& state, Build build)
    {
        const std::string path = file(state.range(0));
        warmUp([&] { build(path); });
        for (auto _ : state)
            benchmark::DoNotOptimize(build(path));
        state.SetItemsProcessed(state.iterations() * state.range(0));
    }
};
} // namespace bench
