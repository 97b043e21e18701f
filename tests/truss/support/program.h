// SPDX-License-Identifier: MIT
// Runs the example application as a user would.
#pragma once

#include <support/temporarydirectory.h>

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <string>

/// What a run of the program has left behind.
struct Outcome
{
    int status; ///< exit status
    std::string out;
    std::string err;
};

/// Runs the program in a directory of its own, without a terminal and in the plain C locale.
class ProgramTest : public testing::Test
{
protected:
    /// The arguments as in a shell; the environment as in "NAME=value NAME=value".
    Outcome run(const std::string& arguments, const std::string& environment = "LC_ALL=C")
    {
        const std::string command = "cd '" + directory.getPath().string() + "' && env -u LANGUAGE " + environment +
                                    " " + TRUSS_PROGRAM + " " + arguments + " >out.txt 2>err.txt </dev/null";
        const int result = std::system(command.c_str());
        return {WEXITSTATUS(result), directory.read("out.txt"), directory.read("err.txt")};
    }

    TemporaryDirectory directory;
    const std::string data = TRUSS_DATA;
};
