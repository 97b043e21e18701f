// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include <kel/stdouterr.h>

#include <memory>
#include <string>

namespace Kel
{
class File;
}

namespace truss
{
/// Runs a program to its end and keeps what it writes.
///
///     CapturedProgram program;
///     program.setInput(file);
///     program.run("checker -strict", Kel::File(Ztring()));
///     for (std::string line; program.getOutput().getMore(line);) // at the end throws what is on its error output
///         show(line);
///
/// Needs the LinuxPlatform. The user can interrupt the run.
class CapturedProgram
{
public:
    /// The program's standard input; nothing unless set.
    void setInput(const Kel::File& file);

    /// Runs the command line, with the file (unless it is empty) as its last word. A program that cannot be started is
    /// a Problem; one that fails is a Problem with what it wrote on its error output, or else its exit status.
    void run(const Ztring& commandLine, const Kel::File& file);

    /// What the program wrote; exists after run().
    StdOutErr& getOutput() { return *m_output; }

private:
    std::string m_input;
    std::unique_ptr<StdOutErr> m_output;
};
} // namespace truss
