// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include "truss/document/document.h"
#include "truss/jobs/failurecounter.h"
#include "truss/shell/consolestatus.h"

namespace truss
{
class JobQueue;
struct Options;

/// The program: installs its services with the library, makes jobs of the command line and runs them.
class Application
{
public:
    Application(int argc, char** argv) : m_argc(static_cast<unsigned>(argc)), m_argv(argv) {}

    /// @return the exit status: 0 when all went well, 1 after a failure or an interruption.
    int run();

private:
    void runJobs();
    void addJobs(const Options& options, JobQueue& jobs);
    void addInput(const Options& options, JobQueue& jobs);
    void addOutput(const Options& options, JobQueue& jobs);
    void addStudy(const Options& options, JobQueue& jobs);

    unsigned m_argc;
    char** m_argv;
    ConsoleStatus m_status; // before the others: all work reports to it
    FailureCounter m_failures;
    Document m_document;
};
} // namespace truss
