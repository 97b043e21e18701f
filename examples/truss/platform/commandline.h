// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include <string>
#include <vector>

namespace truss
{
/// A command line as Platform::run builds it: words between spaces, with double quotes around a word that has spaces.
class CommandLine
{
public:
    CommandLine() = delete;

    /// The words without their quotes. There is no way to write a double quote inside a word, and nothing else that a
    /// shell would do is done.
    static std::vector<std::string> split(const std::string& text);
};
} // namespace truss
