// SPDX-License-Identifier: MIT
// The jobs of the example application, run through the library's queues.
#include <truss/jobs/importjob.h>
#include <truss/jobs/jobqueue.h>
#include <truss/jobs/openjob.h>
#include <truss/jobs/picturejob.h>
#include <truss/jobs/resultsjob.h>
#include <truss/jobs/savejob.h>
#include <truss/jobs/scriptjob.h>
#include <truss/jobs/solvejob.h>
#include <truss/jobs/study.h>
#include <truss/jobs/studyreport.h>
#include <truss/jobs/studytask.h>

#include <truss/jobs/failurecounter.h>
#include <truss/support/trusstest.h>

#include <kel/othertasks.h>
#include <kel/parallel.h>
#include <kel/sound.h>
#include <kel/tasks.h>
#include <kel/taskslistener.h>

#include <gmock/gmock.h>

namespace
{
using Method = truss::Analysis::Method;
using testing::ElementsAre;

/// Records the sounds.
class TestSound : public Sound
{
public:
    void play(Event event, bool) override { played.push_back(event); }

    std::vector<Event> played;
};

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

class Jobs : public TrussTest
{
protected:
    Kel::File file(const std::string& name) { return Kel::File(directory / name); }

    void run()
    {
        jobs.start();
        while (!jobs.isFinished())
        {
            Tasks::getSingleton()->onIdle();
            OtherTasks::getSingleton()->onIdle();
        }
    }

    template <class Job, class... Arguments>
    void add(Arguments&&... arguments)
    {
        jobs.add(std::make_unique<Job>(document, std::forward<Arguments>(arguments)...));
    }

    void addStudy(const std::string& text, bool takeTurns, const std::string& table)
    {
        const auto study = std::make_shared<truss::Study>(text);
        jobs.add(std::make_unique<truss::StudyTask>(
            document, study, Method::Direct, takeTurns,
            std::make_unique<truss::StudyReport>(study, file(table), file(table + ".svg"))));
    }

    /// Presses Stop at the next update.
    void interruptSoon()
    {
        status.elapse();
        status.interruptAt(status.updates.size() + 1);
    }

    std::vector<std::string> errors() const
    {
        std::vector<std::string> texts;
        for (const auto& [type, text] : log->messages)
        {
            if (type == Message::Error)
                texts.push_back(text);
        }
        return texts;
    }

    bool wasInterrupted() const
    {
        return testing::Value(log->messages, testing::Contains(std::make_pair(Message::Info, "Interrupted: ")));
    }

    /// A chain of many bars, so that work on it takes several steps.
    void importChain(unsigned bars)
    {
        std::ostringstream csv;
        csv << "node,n0,0,0,0\nsupport,n0,1,1,1\n";
        for (unsigned i = 1; i <= bars; ++i)
            csv << "node,n" << i << ',' << i << ",0,0\nsupport,n" << i << ",0,1,1\nbar,b" << i << ",n" << i - 1 << ",n"
                << i << ",1,1e7\n";
        csv << "load,n" << bars << ",1,0,0\n";
        import(csv.str());
    }

    Installed<TestSound> sound;
    truss::FailureCounter failures;
    truss::JobQueue jobs{failures};
};

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
    EXPECT_THAT(status.texts, testing::IsSupersetOf({"Importing 0", "Running the script 0", "Solving 0", "Saving -1",
                                                     "Writing results -1", "Drawing 0"}));
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
    EXPECT_TRUE(wasInterrupted());
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
    EXPECT_TRUE(wasInterrupted());
    EXPECT_EQ(toCsv(), before);
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
    EXPECT_TRUE(wasInterrupted());
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
        EXPECT_TRUE(wasInterrupted()) << update;
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
    EXPECT_TRUE(wasInterrupted());
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

TEST_F(Jobs, AStudyVariesACopyAndWritesATableAndACurve)
{
    importData("tenbar.csv");
    const std::string before = toCsv();
    addStudy("b1:30.52:61.04:3", false, "s.csv");
    run();
    EXPECT_TRUE(errors().empty());
    EXPECT_EQ(toCsv(), before);
    std::istringstream table(directory.read("s.csv"));
    std::string line;
    std::getline(table, line);
    EXPECT_EQ(line, "area,weight,displacement,stress");
    std::getline(table, line);
    EXPECT_EQ(line.rfind("30.52,5060.926", 0), 0u);
    EXPECT_NE(line.find(",1.99996"), std::string::npos);
    std::getline(table, line);
    EXPECT_EQ(line.rfind("45.78,5610.286", 0), 0u);
    EXPECT_TRUE(directory.has("s.csv.svg"));
}

TEST_F(Jobs, CasesThatTakeTurnsGiveTheSameTable)
{
    importChain(11000);
    addStudy("b7:1:2:4", false, "plain.csv");
    addStudy("b7:1:2:4", true, "turns.csv");
    run();
    EXPECT_TRUE(errors().empty());
    EXPECT_EQ(directory.read("turns.csv"), directory.read("plain.csv"));
}

TEST_F(Jobs, CasesTakeTurnsWhenAskedTo)
{
    importChain(6000);
    addStudy("b7:1:2:2", true, "s.csv");
    run();
    const auto is = [](const char* text) { return testing::StartsWith(text); };
    std::vector<std::string> cases;
    std::copy_if(status.texts.begin(), status.texts.end(), std::back_inserter(cases),
                 [](const std::string& text) { return text.rfind("Solving case", 0) == 0; });
    ASSERT_GE(cases.size(), 4u);
    EXPECT_THAT(cases[0], is("Solving case 1"));
    EXPECT_THAT(cases[1], is("Solving case 2"));
    EXPECT_THAT(cases[2], is("Solving case 1"));
}

TEST_F(Jobs, AnInterruptedStudyIsDroppedAndTheNextJobGoesOn)
{
    importData("tenbar.csv");
    interruptSoon();
    addStudy("b1:1:2:5", false, "s.csv");
    add<truss::SaveJob>(file("a.truss"));
    run();
    EXPECT_EQ(failures.getInterruptionCount(), 1u);
    EXPECT_FALSE(directory.has("s.csv"));
    EXPECT_TRUE(directory.has("a.truss"));
}

TEST_F(Jobs, AStudyThatFailsSaysSoOnceAndWritesNothing)
{
    import("node,a,0,0,0\nnode,b,1,0,0\nbar,ab,a,b,1,1\nsupport,a,1,1,1\n");
    for (const bool takeTurns : {false, true})
    {
        addStudy("ab:1:2:5", takeTurns, "s.csv");
        run();
        EXPECT_THAT(errors(), ElementsAre("The truss is a mechanism: node 'b' moves freely"));
        EXPECT_FALSE(directory.has("s.csv"));
        log->messages.clear();
    }
}

TEST_F(Jobs, AStudyOfAMissingBarIsRefused)
{
    importData("tenbar.csv");
    addStudy("b99:1:2:5", false, "s.csv");
    run();
    EXPECT_THAT(errors(), ElementsAre("There is no bar named 'b99'"));
}

TEST(Study, RefusesWhatItCannotDo)
{
    using truss::Study;
    EXPECT_PROBLEM(Study("b1:1:2"), "A study is asked for as BAR:from:to:steps");
    EXPECT_PROBLEM(Study("b1:1:2:3:4"), "A study is asked for as BAR:from:to:steps");
    EXPECT_PROBLEM(Study("b1:one:2:3"), "'one' is not a number");
    EXPECT_PROBLEM(Study("b1:0:2:3"), "The area '0' is not positive");
    EXPECT_PROBLEM(Study("b1:1:-2:3"), "The area '-2' is not positive");
    EXPECT_PROBLEM(Study("b1:1:2:1"), "A study takes 2 to 10000 steps, not 1");
    EXPECT_PROBLEM(Study("b1:1:2:2.5"), "A study takes 2 to 10000 steps, not 2.5");
    EXPECT_PROBLEM(Study("b1:1:2:1e9"), "A study takes 2 to 10000 steps, not 1e9");
}

TEST(Study, SpacesTheAreasEvenly)
{
    const truss::Study study("b1:4:1:4");
    std::vector<double> areas;
    for (const auto& row : study.getRows())
        areas.push_back(row.area);
    EXPECT_THAT(areas, ElementsAre(4, 3, 2, 1));
}
} // namespace
