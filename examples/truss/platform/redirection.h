// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include <string>

namespace truss
{
/// The files that stand for a program's standard streams, by path in UTF-8.
struct Redirection
{
    std::string in = "/dev/null";
    std::string out; ///< empty: the same as ours
    std::string err;
};
} // namespace truss
