// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/application.h"

#include "truss/jobs/checkjob.h"
#include "truss/jobs/importjob.h"
#include "truss/jobs/jobqueue.h"
#include "truss/jobs/openjob.h"
#include "truss/jobs/picturejob.h"
#include "truss/jobs/recoverjob.h"
#include "truss/jobs/reportjob.h"
#include "truss/jobs/resultsjob.h"
#include "truss/jobs/savejob.h"
#include "truss/jobs/scriptjob.h"
#include "truss/jobs/solvejob.h"
#include "truss/jobs/study.h"
#include "truss/jobs/studyreport.h"
#include "truss/jobs/studytask.h"
#include "truss/jobs/viewjob.h"
#include "truss/platform/linuxplatform.h"
#include "truss/shell/busyindicator.h"
#include "truss/shell/language.h"
#include "truss/shell/mainloop.h"
#include "truss/shell/options.h"
#include "truss/shell/services.h"
#include "truss/shell/wheeltask.h"
#include "truss/text/text.h"

#include <kel/args.h>
#include <kel/parallel.h>
#include <kel/simpletask.h>
#include <kel/sound.h>

namespace truss
{
namespace
{
Analysis::Method chooseMethod(const Options& options)
{
    return options.iterative ? Analysis::Method::Iterative : Analysis::Method::Direct;
}
} // namespace

int Application::run()
{
    SimpleTask<Application>(this, &Application::runJobs).execute(); // reports any failure like that of a job
    return m_failures.getErrorCount() + m_failures.getInterruptionCount() > 0 ? 1 : 0;
}

void Application::runJobs()
{
    Services::install();
    Language::loadCatalogue();
    Args args(m_argc, m_argv);
    const Options options = Options::parse(args);
    if (options.help)
        return;
    Sound::getSingleton()->setOn(options.bell);
    Parallel::getSingleton()->setShowDiagnostics(options.diagnostics);

    LinuxPlatform& platform = *LinuxPlatform::getSingleton();
    platform.startTimer(new WheelTask);
    const BusyIndicator indicator(m_status);
    JobQueue jobs(m_failures);
    addJobs(options, jobs);
    jobs.start();
    MainLoop(platform.getTimers()).run(jobs);
}

void Application::addJobs(const Options& options, JobQueue& jobs)
{
    addInput(options, jobs);
    if (options.checkMesh)
        jobs.add(std::make_unique<CheckJob>(m_document, fromUtf8(*options.checkMesh)));
    if (options.solve)
        jobs.add(std::make_unique<SolveJob>(m_document, chooseMethod(options)));
    if (options.study)
        addStudy(options, jobs);
    addOutput(options, jobs);
    if (options.report)
        jobs.add(std::make_unique<ReportJob>(m_document, fromUtf8(*options.report)));
}

void Application::addInput(const Options& options, JobQueue& jobs)
{
    if (options.document)
        jobs.add(std::make_unique<OpenJob>(m_document, *options.document));
    if (options.recover)
        jobs.add(std::make_unique<RecoverJob>(m_document, *options.recover));
    if (options.import)
        jobs.add(std::make_unique<ImportJob>(m_document, *options.import));
    if (options.script)
        jobs.add(std::make_unique<ScriptJob>(m_document, *options.script));
}

void Application::addOutput(const Options& options, JobQueue& jobs)
{
    if (options.save)
        jobs.add(std::make_unique<SaveJob>(m_document, *options.save));
    if (options.results)
        jobs.add(std::make_unique<ResultsJob>(m_document, *options.results, &ResultsWriter::write));
    if (options.reactions)
        jobs.add(std::make_unique<ResultsJob>(m_document, *options.reactions, &ResultsWriter::writeReactions));
    if (options.picture)
        jobs.add(std::make_unique<PictureJob>(m_document, *options.picture));
    if (options.view)
        jobs.add(std::make_unique<ViewJob>(*options.picture));
}

void Application::addStudy(const Options& options, JobQueue& jobs)
{
    const auto study = std::make_shared<Study>(*options.study);
    auto report = std::make_unique<StudyReport>(study, options.studyTable, options.studyPlot);
    jobs.add(
        std::make_unique<StudyTask>(m_document, study, chooseMethod(options), options.interleave, std::move(report)));
}
} // namespace truss
