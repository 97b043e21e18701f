// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// What the measurements of libkel and of its peers share.
///
/// A benchmark is called row/contender/size: contenders of one row do the same work on the same data, so that the
/// quotient of their times means something. Every source registers its own rows:
///
///     const bool registered = bench::add("notify", "libkel", bench::receivers, notify);
namespace bench
{
using Body = std::function<void(benchmark::State&)>;

/// Numbers of objects that most rows are measured with.
inline const std::vector<int64_t> objects = {10'000, 100'000, 1'000'000};

/// Numbers of receivers that are told of one change.
inline const std::vector<int64_t> receivers = {1, 10, 1000};

/// Sizes of rows whose work has no size.
inline const std::vector<int64_t> single = {1};

/// Registers a benchmark; returns true, so that a static initialiser can call it.
bool add(const std::string& row, const std::string& contender, const std::vector<int64_t>& sizes, const Body& body);

/// Registers a test of a contender, which throws when the work it measures is done wrongly.
bool addCheck(const std::string& name, const std::function<void()>& check);

/// True when every benchmark runs exactly once and without warm-up, for the peak memory of the process.
bool runsOnce();

/// Does the work once, unmeasured, so that the first measured time pays for no cold cache and no fresh heap.
template <class Work>
void warmUp(const Work& work)
{
    if (!runsOnce())
        work();
}

/// Where files are written and read; the folder exists.
const std::filesystem::path& folder();

/// The numbers 0 to count - 1 in an order that looks random and is always the same.
std::vector<uint32_t> shuffled(size_t count);

/// Whole contents of a file.
std::string contents(const std::filesystem::path& path);

/// Runs the benchmarks that the command line names; the value for the process to exit with.
///
/// Own options: --once (each benchmark runs once), --folder=DIR (instead of a temporary one that is removed at the
/// end), --check (runs the tests of the contenders and measures nothing). All else is Google Benchmark's.
int run(int argc, char** argv);
} // namespace bench
