// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/application.h"

#include "truss/jobs/importjob.h"
#include "truss/jobs/jobqueue.h"
#include "truss/jobs/openjob.h"
#include "truss/jobs/picturejob.h"
#include "truss/jobs/resultsjob.h"
#include "truss/jobs/savejob.h"
#include "truss/jobs/scriptjob.h"
#include "truss/jobs/solvejob.h"
#include "truss/shell/options.h"
#include "truss/shell/services.h"

#include <kel/args.h>
#include <kel/othertasks.h>
#include <kel/problem.h>
#include <kel/tasks.h>

namespace truss
{
namespace
{
/// One step of work; @return whether there is more to do at once.
bool idle()
{
    const bool more = Tasks::getSingleton()->onIdle();
    return OtherTasks::getSingleton()->onIdle() || more;
}
} // namespace

Application::Application()
{
    Services::install();
}

int Application::run(int argc, char** argv)
{
    try
    {
        runJobs(argc, argv);
    }
    catch (Problem& problem)
    {
        Task::onError(problem); // reported like the failure of a job
    }
    return m_failures.getErrorCount() + m_failures.getInterruptionCount() > 0 ? 1 : 0;
}

void Application::runJobs(int argc, char** argv)
{
    Args args(static_cast<unsigned>(argc), argv);
    const Options options = Options::parse(args);
    if (options.help)
        return;
    JobQueue jobs(m_failures);
    addJobs(options, jobs);
    jobs.start();
    while (!jobs.isFinished())
        idle();
}

void Application::addJobs(const Options& options, JobQueue& jobs)
{
    if (options.document)
        jobs.add(std::make_unique<OpenJob>(m_document, *options.document));
    if (options.import)
        jobs.add(std::make_unique<ImportJob>(m_document, *options.import));
    if (options.script)
        jobs.add(std::make_unique<ScriptJob>(m_document, *options.script));
    if (options.solve)
        jobs.add(std::make_unique<SolveJob>(m_document, options.iterative ? Analysis::Method::Iterative
                                                                          : Analysis::Method::Direct));
    if (options.save)
        jobs.add(std::make_unique<SaveJob>(m_document, *options.save));
    if (options.results)
        jobs.add(std::make_unique<ResultsJob>(m_document, *options.results, &ResultsWriter::write));
    if (options.reactions)
        jobs.add(std::make_unique<ResultsJob>(m_document, *options.reactions, &ResultsWriter::writeReactions));
    if (options.picture)
        jobs.add(std::make_unique<PictureJob>(m_document, *options.picture));
}
} // namespace truss
