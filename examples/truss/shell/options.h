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
    using File = std::optional<Kel::File>;
    using Text = std::optional<std::string>; ///< in UTF-8

    File document;
    File recover;
    File import;
    File script;
    Text checkMesh;
    bool solve = false;
    bool iterative = false;
    File save;
    File results;
    File reactions;
    File picture;
    bool view = false;
    Text study;
    bool interleave = false;
    File studyTable;
    File studyPlot;
    Text report;
    bool bell = false;
    bool diagnostics = false;
    bool help = false;

    /// Takes all options that the program knows out of the arguments, and lets these report what is left over. A value
    /// that is missing, an option that is no use without another, and a second document are Problems.
    static Options parse(Args& args);
};
} // namespace truss
