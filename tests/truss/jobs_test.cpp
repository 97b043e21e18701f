// SPDX-License-Identifier: MIT
// The jobs of the example application, run through the library's queues.
#include <truss/support/jobstest.h>

#include "truss/jobs/importjob.h"
#include "truss/jobs/openjob.h"
#include "truss/jobs/picturejob.h"
#include "truss/jobs/resultsjob.h"
#include "truss/jobs/savejob.h"
#include "truss/jobs/scriptjob.h"
#include "truss/jobs/solvejob.h"

#include <kel/parallel.h>
#include <kel/taskslistener.h>

#include <algorithm>

namespace
{
using Method = truss::Analysis::Method;
using testing::ElementsAre;

/// Records whether a run is in progress.
class BusyRecorder : public TasksListener
{
public:
    BusyRecorder() { Tasks::getSingleton()->attach(this); }
    ~BusyRecorder() override { Tasks::getSingleton()->detach(this); }

    void tasksChanged(bool busy) override { heard.push_back(busy); }
    void enableMenu(bool) override {}

    std::vector<bool> heard;
};

using Jobs = JobsTest;

TEST_F(Jobs, RunInTheirOrder)
{
    add<truss::ImportJob>(Kel::File(TRUSS_DATA "/tenbar.csv"));
    add<truss::ScriptJob>(Kel::File(TRUSS_DATA "/edits.txt"));
    add<truss::SolveJob>(Method::Direct);
    add<truss::SaveJob>(file("a.truss"));
    add<truss::ResultsJob>(file("r.csv"), &truss::ResultsWriter::write);
    add<truss::PictureJob>(file("p.svg"));
    run();
    EXPECT_EQ(failures.getErrorCount(), 0u);
    std::vector<std::string> titles;
    for (const std::string& text : status.texts)
    {
        const std::string title = text.substr(0, text.rfind(' '));
        if (titles.empty() || titles.back() != title)
            titles.push_back(title);
    }
    EXPECT_THAT(titles, ElementsAre("Importing", "Running the script", "Solving", "Saving", "Writing",
                                    "Writing results", "Drawing"));
    for (const char* name : {"a.truss", "r.csv", "p.svg"})
        EXPECT_TRUE(directory.has(name)) << name;
}

TEST_F(Jobs, AfterAFailureTheRestIsDropped)
{
    add<truss::OpenJob>(file("missing.truss"));
    add<truss::SaveJob>(file("a.truss"));
    run();
    EXPECT_EQ(failures.getErrorCount(), 1u);
    EXPECT_EQ(errors().size(), 1u);
    EXPECT_FALSE(directory.has("a.truss"));
}

TEST_F(Jobs, AfterAnInterruptionTheNextGoesOn)
{
    importData("tenbar.csv");
    interruptSoon();
    add<truss::SolveJob>(Method::Direct);
    add<truss::SaveJob>(file("a.truss"));
    run();
    EXPECT_TRUE(wasInterrupted("Solving"));
    EXPECT_EQ(failures.getInterruptionCount(), 1u);
    EXPECT_EQ(failures.getErrorCount(), 0u);
    EXPECT_FALSE(status.isInterrupted());
    EXPECT_TRUE(directory.has("a.truss"));
}

TEST_F(Jobs, TheEndOfAllIsAnnouncedWithOneSound)
{
    add<truss::ImportJob>(Kel::File(TRUSS_DATA "/tenbar.csv"));
    add<truss::SolveJob>(Method::Direct);
    run();
    EXPECT_THAT(sound->played, ElementsAre(Sound::WorkFinished));
}

TEST_F(Jobs, AFailureIsAnnouncedWithTheSoundToo)
{
    add<truss::OpenJob>(file("missing.truss"));
    add<truss::SaveJob>(file("a.truss"));
    run();
    EXPECT_THAT(sound->played, ElementsAre(Sound::WorkFinished));
}

TEST_F(Jobs, EachIsARunOfTheQueue)
{
    const BusyRecorder recorder;
    add<truss::ImportJob>(Kel::File(TRUSS_DATA "/tenbar.csv"));
    add<truss::SolveJob>(Method::Direct);
    run();
    while (OtherTasks::getSingleton()->onIdle())
        ;
    EXPECT_THAT(recorder.heard, ElementsAre(false, true, false, true, false));
}

TEST_F(Jobs, AnInterruptedImportLeavesTheDocument)
{
    importData("tenbar.csv");
    const std::string before = toCsv();
    std::string lines;
    for (int i = 0; i < 5000; ++i)
        lines += "node,m" + std::to_string(i) + ",0,0,0\n";
    interruptSoon();
    add<truss::ImportJob>(Kel::File(directory.write("more.csv", lines)));
    run();
    EXPECT_TRUE(wasInterrupted("Importing"));
    EXPECT_EQ(toCsv(), before);
}

TEST_F(Jobs, WhatWasNotReadToItsEndReplacesNoFile)
{
    importData("tenbar.csv");
    add<truss::SaveJob>(file("good.truss"));
    run();
    const std::string good = directory.read("good.truss");
    edit("delete n1");
    interruptSoon();
    add<truss::OpenJob>(file("good.truss"));
    add<truss::SaveJob>(file("good.truss"));
    run();
    EXPECT_TRUE(wasInterrupted("Opening"));
    EXPECT_THAT(errors(),
                ElementsAre("'" + directory / "good.truss" + "' is not replaced: the model was not read completely"));
    EXPECT_EQ(directory.read("good.truss"), good);
}

TEST_F(Jobs, WhatWasNotReadToItsEndCanBeSavedElsewhere)
{
    importData("tenbar.csv");
    interruptSoon();
    add<truss::ScriptJob>(Kel::File(TRUSS_DATA "/edits.txt"));
    add<truss::SaveJob>(file("new.truss"));
    run();
    EXPECT_TRUE(wasInterrupted("Running the script"));
    EXPECT_TRUE(errors().empty());
    EXPECT_TRUE(directory.has("new.truss"));
}

TEST_F(Jobs, AnInterruptedOpeningLeavesTheDocument)
{
    importData("tenbar.csv");
    add<truss::SaveJob>(file("a.truss"));
    run();
    edit("delete n1");
    const std::string before = toCsv();
    interruptSoon();
    add<truss::OpenJob>(file("a.truss"));
    run();
    EXPECT_TRUE(wasInterrupted("Opening"));
    EXPECT_EQ(toCsv(), before);
    document.undo(); // also its history
}

TEST_F(Jobs, AnInterruptedAnalysisLeavesNoResult)
{
    importChain(12000); // assembled in three steps
    for (const std::size_t update : {1u, 2u, 4u})
    {
        const std::size_t seen = status.updates.size();
        status.setUpdateInterval(0); // every check is an update
        status.elapse();
        status.interruptAt(seen + update);
        add<truss::SolveJob>(update == 4 ? Method::Iterative : Method::Direct);
        run();
        EXPECT_TRUE(wasInterrupted("Solving")) << update;
        EXPECT_EQ(document.getResponse(), nullptr) << update;
        log->messages.clear();
    }
}

TEST_F(Jobs, AnInterruptedPictureLeavesTheOldFile)
{
    importChain(3000);
    directory.write("p.svg", "old");
    status.setUpdateInterval(0); // every check is an update
    status.elapse();
    status.interruptAt(status.updates.size() + 2);
    add<truss::PictureJob>(file("p.svg"));
    run();
    EXPECT_TRUE(wasInterrupted("Drawing"));
    EXPECT_EQ(directory.read("p.svg"), "old");
    EXPECT_FALSE(directory.has("p.svg.tmp"));
}

TEST_F(Jobs, ProgressRunsFromNothingTowardsAll)
{
    status.setUpdateInterval(0); // every check is an update
    status.elapse();
    importChain(12000);
    status.updates.clear();
    add<truss::SolveJob>(Method::Iterative);
    run();
    EXPECT_TRUE(std::is_sorted(status.updates.begin(), status.updates.end()));
    EXPECT_GT(status.updates.size(), 4u);
    EXPECT_EQ(status.updates.front(), 0);
}

TEST_F(Jobs, DiagnosticsShowTheSizeOfAnAnalysis)
{
    importData("tenbar.csv");
    Parallel::getSingleton()->setShowDiagnostics(true);
    add<truss::SolveJob>(Method::Direct);
    run();
    ASSERT_EQ(log->messages.size(), 4u);
    EXPECT_THAT(log->messages[0].second, testing::EndsWith("Task Begin: Solving"));
    EXPECT_THAT(log->messages[1].second, testing::EndsWith("Threads: 1, Task Size: 10"));
    EXPECT_THAT(log->messages[2].second, testing::HasSubstr("Task End, Duration: "));
}
} // namespace
