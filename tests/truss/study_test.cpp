// SPDX-License-Identifier: MIT
// Batches of analyses of the example application.
#include <truss/jobs/study.h>

#include <truss/support/jobstest.h>

#include "truss/jobs/savejob.h"
#include "truss/jobs/studyreport.h"
#include "truss/jobs/studytask.h"

#include <algorithm>

namespace
{
using testing::ElementsAre;

class Studies : public JobsTest
{
protected:
    void addStudy(const std::string& text, bool takeTurns, const std::string& table)
    {
        const auto study = std::make_shared<truss::Study>(text);
        jobs.add(std::make_unique<truss::StudyTask>(
            document, study, truss::Analysis::Method::Direct, takeTurns,
            std::make_unique<truss::StudyReport>(study, file(table), file(table + ".svg"))));
    }
};

TEST_F(Studies, AStudyVariesACopyAndWritesATableAndACurve)
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

TEST_F(Studies, CasesThatTakeTurnsGiveTheSameTable)
{
    importChain(11000);
    addStudy("b7:1:2:4", false, "plain.csv");
    addStudy("b7:1:2:4", true, "turns.csv");
    run();
    EXPECT_TRUE(errors().empty());
    EXPECT_EQ(directory.read("turns.csv"), directory.read("plain.csv"));
}

TEST_F(Studies, CasesTakeTurnsWhenAskedTo)
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

TEST_F(Studies, AnInterruptedStudyIsDroppedAndTheNextJobGoesOn)
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

TEST_F(Studies, AStudyThatFailsSaysSoOnceAndWritesNothing)
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

TEST_F(Studies, AStudyOfAMissingBarIsRefused)
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
