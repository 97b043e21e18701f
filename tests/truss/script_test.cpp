// SPDX-License-Identifier: MIT
#include <truss/script/script.h>

#include <truss/support/trusstest.h>

#include <kel/file_kel.h>

namespace
{
class Script : public TrussTest
{
protected:
    Script() { import("node,a,0,0,0\nnode,b,1,1,0\nbar,ab,a,b,1,10,100\n"); }

    void run(const std::string& lines)
    {
        truss::Script script(document, Kel::File(directory.write("edits.txt", lines)));
        while (script.runLine())
            ;
    }

    std::vector<std::string> logged() const
    {
        std::vector<std::string> texts;
        for (const auto& [type, text] : log->messages)
            texts.push_back(text);
        return texts;
    }

    std::string place(unsigned line) const { return directory / "edits.txt" + ", line " + std::to_string(line) + "\n"; }
};

TEST_F(Script, LogsAfterEachEditWhatCanBeUndoneAndRedone)
{
    run("move a 5 5 5\narea ab 2\nundo\nundo\nredo\n");
    EXPECT_EQ(logged(), (std::vector<std::string>{
                            "Undo: Move node 'a', Redo: -",
                            "Undo: Change area of bar 'ab', Redo: -",
                            "Undo: Move node 'a', Redo: Change area of bar 'ab'",
                            "Undo: Import 'import.csv', Redo: Move node 'a'",
                            "Undo: Move node 'a', Redo: Change area of bar 'ab'",
                        }));
}

TEST_F(Script, SkipsCommentsAndEmptyLinesAndTakesTabs)
{
    run("# move a 1 1 1\n\n  \r\n\tmove\ta  2   3 4 \r\n");
    EXPECT_EQ(node("a").getPosition(), (truss::Vector{2, 3, 4}));
}

TEST_F(Script, AGroupIsOneCommand)
{
    const std::string before = toCsv();
    run("group\nadd node c 9 9 9\nadd bar ac a c 1 1\nmove c 8 8 8\ndelete b\nend\n");
    EXPECT_EQ(logged(), std::vector<std::string>{"Undo: Group of edits, Redo: -"});
    EXPECT_EQ(bar("ac").getTo()->getPosition(), (truss::Vector{8, 8, 8}));
    const auto grouped = entries();
    document.undo();
    EXPECT_EQ(toCsv(), before);
    document.redo();
    EXPECT_EQ(entries(), grouped);
}

TEST_F(Script, AGroupThatFailsLeavesNothingAndNamesItsLine)
{
    const std::string before = toCsv();
    EXPECT_PROBLEM(run("group\nadd node c 9 9 9\nmove d 1 1 1\nend\n"), place(3) + "There is no node named 'd'");
    EXPECT_EQ(toCsv(), before);
    EXPECT_TRUE(logged().empty());
}

TEST_F(Script, AnEmptyGroupIsNoCommand)
{
    run("group\nend\n");
    EXPECT_EQ(logged(), std::vector<std::string>{"Undo: Import 'import.csv', Redo: -"});
}

TEST_F(Script, AnInterruptedGroupIsUndoneUpToWhereItCame)
{
    const std::string before = toCsv();
    status.elapse();
    status.interruptAt(1);
    EXPECT_THROW(run("group\nmove a 1 1 5\nmove a 1 1 6\nend\n"), Interrupted);
    EXPECT_EQ(node("a").getPosition()[2], 5);
    status.resetInterrupts();
    document.undo();
    EXPECT_EQ(toCsv(), before);
}

TEST_F(Script, StopsAtTheFirstLineThatFailsAndKeepsTheEditsBefore)
{
    EXPECT_PROBLEM(run("move a 5 5 5\n\nmove z 1 1 1\nmove a 6 6 6\n"), place(3) + "There is no node named 'z'");
    EXPECT_EQ(node("a").getPosition()[0], 5);
}

TEST_F(Script, RefusesWhatMakesNoSense)
{
    EXPECT_PROBLEM(run("end\n"), place(1) + "Unknown edit 'end'");
    EXPECT_PROBLEM(run("redo\n"), place(1) + "There is nothing to redo");
    EXPECT_PROBLEM(run("group\ngroup\nend\n"), place(2) + "This is not possible within a group");
    EXPECT_PROBLEM(run("group\nundo\nend\n"), place(2) + "This is not possible within a group");
    EXPECT_PROBLEM(run("group\nredo\nend\n"), place(2) + "This is not possible within a group");
    EXPECT_PROBLEM(run("group\nmove a 1 1 1\n"), "The script ends within a group");
    EXPECT_PROBLEM(run("undo\nundo\n"), place(2) + "There is nothing to undo");
}

TEST_F(Script, TheEditsOfTheDataFolderLeaveTheModelAsItWas)
{
    document.replace(truss::BulletinPtr<truss::Model>(new truss::Model));
    importData("tenbar.csv");
    const std::string before = toCsv();
    truss::Script script(document, Kel::File(TRUSS_DATA "/edits.txt"));
    while (script.runLine())
        ;
    EXPECT_EQ(toCsv(), before);
    EXPECT_EQ(log->messages.size(), 16u);
}
} // namespace
