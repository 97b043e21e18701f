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
    Application();

    /// @return the exit status: 0 when all went well, 1 after a failure or an interruption.
    int run(int argc, char** argv);

private:
    void runJobs(int argc, char** argv);
    void addJobs(const Options& options, JobQueue& jobs);
    void addInput(const Options& options, JobQueue& jobs);
    void addOutput(const Options& options, JobQueue& jobs);
    void addStudy(const Options& options, JobQueue& jobs);

    ConsoleStatus m_status; // first: all work reports to it
    FailureCounter m_failures;
    Document m_document;
};
} // namespace truss
