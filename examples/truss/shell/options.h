// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include <kel/file_kel.h>

#include <optional>
#include <string>

class Args;

namespace truss
{
/// What the command line asks for.
struct Options
{
    std::optional<Kel::File> document;
    std::optional<Kel::File> import;
    std::optional<Kel::File> script;
    bool solve = false;
    bool iterative = false;
    std::optional<Kel::File> save;
    std::optional<Kel::File> results;
    std::optional<Kel::File> reactions;
    std::optional<Kel::File> picture;
    bool help = false;

    /// Takes all options that the program knows out of the arguments, and lets these report what is left over. A value
    /// that is missing, or a second document, is a Problem.
    static Options parse(Args& args);
};
} // namespace truss
