// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include <string>
#include <string_view>

/// What libkel's contender and the hand-written one, which writes the same bytes, have to agree on.
namespace bench
{
class Graph;

inline constexpr std::string_view header = "Benchmark of libkel";
inline constexpr std::string_view documentClass = "Document";
inline constexpr std::string_view nodeClass = "Node";

/// The graph as libkel saves it.
std::string saveWithLibkel(const Graph& graph);
} // namespace bench
