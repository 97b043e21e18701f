// SPDX-License-Identifier: MIT
// The example application from its command line to its files.
#include <truss/support/program.h>

namespace
{
class Program : public ProgramTest
{
protected:
    static std::string afterFirstLine(const std::string& text) { return text.substr(text.find('\n')); }

    /// The numbers of the line of a results file that begins with the text.
    std::vector<double> result(const std::string& file, const std::string& begin)
    {
        std::istringstream in(directory.read(file));
        for (std::string line; std::getline(in, line);)
        {
            if (line.rfind(begin + ",", 0) != 0)
                continue;
            std::vector<double> numbers;
            std::istringstream fields(line.substr(begin.size() + 1));
            for (std::string field; std::getline(fields, field, ',');)
                numbers.push_back(std::stod(field));
            return numbers;
        }
        return {};
    }
};

TEST_F(Program, SolvesTheTenBarTruss)
{
    const Outcome solved = run("-import=" + data + "/tenbar.csv -solve -results=r.csv");
    EXPECT_EQ(solved.status, 0);
    EXPECT_EQ(solved.err, "");
    EXPECT_EQ(solved.out, "Weight: 5060.93\nLargest displacement: -1.99996 along y at node 'n1'\n"
                          "Largest stress: 25002.7 in bar 'b5'\n");
    EXPECT_NEAR(result("r.csv", "weight").at(0), 5060.9, 0.05);
    EXPECT_NEAR(result("r.csv", "node,n1").at(1), -2.00, 0.01);
    EXPECT_NEAR(result("r.csv", "node,n2").at(1), -2.00, 0.01);
    EXPECT_NEAR(result("r.csv", "bar,b1").at(0), 30.52 * result("r.csv", "bar,b1").at(1), 1e-6);
}

TEST_F(Program, RunsAScriptOfEditsAndStillGetsThePublishedFigures)
{
    const Outcome edited = run("-import=" + data + "/tenbar.csv -script=" + data + "/edits.txt -solve -iterative");
    EXPECT_EQ(edited.status, 0);
    EXPECT_NE(edited.out.find("Undo: Move node 'n1', Redo: -\n"), std::string::npos);
    EXPECT_NE(edited.out.find("Undo: Change area of bar 'b2', Redo: Group of edits\n"), std::string::npos);
    EXPECT_NE(edited.out.find("Weight: 5060.93\n"), std::string::npos);
}

TEST_F(Program, SavesOpensAndSavesTheSameBytesButForTheFirstLine)
{
    EXPECT_EQ(run("-import=" + data + "/tenbar.csv -save=a.truss").status, 0);
    EXPECT_EQ(run("a.truss -save=b.truss").status, 0);
    EXPECT_EQ(afterFirstLine(directory.read("a.truss")), afterFirstLine(directory.read("b.truss")));
    EXPECT_NE(directory.read("a.truss").find("Truss Copyright (c) Pinjoint "), std::string::npos);
}

TEST_F(Program, DrawsThePlainAndTheSolvedTruss)
{
    EXPECT_EQ(run("-import=" + data + "/tenbar.csv -save=a.truss -picture=plain.svg").status, 0);
    EXPECT_EQ(run("a.truss -solve -picture=solved.svg").status, 0);
    const std::string plain = directory.read("plain.svg");
    const std::string solved = directory.read("solved.svg");
    EXPECT_NE(plain.find("<svg"), std::string::npos);
    EXPECT_NE(plain.find("</svg>"), std::string::npos);
    EXPECT_EQ(plain.find("stroke-dasharray"), std::string::npos);
    EXPECT_NE(solved.find("stroke-dasharray"), std::string::npos);
}

TEST_F(Program, AFailureIsOneLineOnStandardErrorAndStatusOne)
{
    directory.write("bad.csv", "node,a,0,0,0\nbeam,a,b\n");
    const Outcome failed = run("-import=bad.csv -save=a.truss -solve");
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.out, "");
    EXPECT_EQ(failed.err, "bad.csv, line 2: Unknown kind 'beam'\n");
    EXPECT_FALSE(directory.has("a.truss"));
}

TEST_F(Program, ADamagedDocumentIsOneLineAndStaysAsItIs)
{
    run("-import=" + data + "/tenbar.csv -save=a.truss");
    const std::string whole = directory.read("a.truss");
    const std::string cut = whole.substr(0, whole.size() - 1);
    directory.write("cut.truss", cut);
    const Outcome failed = run("cut.truss -import=" + data + "/tenbar.csv -save=cut.truss");
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err, "Failed to read file: 'cut.truss': Premature end of file\n");
    EXPECT_EQ(directory.read("cut.truss"), cut);
}

TEST_F(Program, ControlCharactersOfADamagedFileDoNotReachTheTerminal)
{
    directory.write("bad.csv", "\x1b[2Jbeam,a,b\n");
    EXPECT_EQ(run("-import=bad.csv").err, "bad.csv, line 1: Unknown kind '?[2Jbeam'\n");
}

TEST_F(Program, AMechanismIsSaidToBeOne)
{
    directory.write("m.csv", "node,a,0,0,0\nnode,b,1,0,0\nbar,ab,a,b,1,1\nsupport,a,1,1,1\n");
    const Outcome failed = run("-import=m.csv -solve");
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err, "The truss is a mechanism: node 'b' moves freely\n");
}

TEST_F(Program, ResultsBeforeSolvingAreRefused)
{
    const Outcome failed = run("-import=" + data + "/tenbar.csv -results=r.csv");
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err, "The truss has not been solved\n");
    EXPECT_FALSE(directory.has("r.csv"));
}

TEST_F(Program, AFileThatCannotBeWrittenIsNamed)
{
    const Outcome failed = run("-import=" + data + "/tenbar.csv -save=nowhere/a.truss");
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err, "Failed to open file: 'nowhere/a.truss.tmp'\n");
}

TEST_F(Program, WritesReactionsAndQuotesNames)
{
    directory.write("m.csv", "node,\"a, 1\",0,0,0\nnode,b,2,0,0\nbar,ab,\"a, 1\",b,4,8\nsupport,\"a, 1\",1,1,1\n"
                             "support,b,0,1,1\nload,b,1,0,0\n");
    EXPECT_EQ(run("-import=m.csv -solve -results=r.csv -reactions=s.csv").status, 0);
    EXPECT_EQ(directory.read("r.csv"), "weight,0\nnode,\"a, 1\",0,0,0\nnode,b,0.0625,0,0\nbar,ab,1,0.25\n");
    EXPECT_EQ(directory.read("s.csv"), "reaction,\"a, 1\",-1,0,0\nreaction,b,0,0,0\n");
}

TEST_F(Program, HelpNamesEveryOptionAndDoesNothingElse)
{
    const Outcome helped = run("-help -import=missing.csv");
    EXPECT_EQ(helped.status, 0);
    EXPECT_EQ(helped.err, "");
    EXPECT_EQ(helped.out.rfind("Usage: ", 0), 0u);
    for (const char* option : {"-help", "-import", "-script", "-solve", "-save", "-results", "-picture"})
        EXPECT_NE(helped.out.find(std::string("[") + option), std::string::npos) << option;
}

TEST_F(Program, UnknownOptionsAreReportedAndPassedOver)
{
    const Outcome warned = run("-import=" + data + "/tenbar.csv -frobnicate=3 -solve");
    EXPECT_EQ(warned.status, 0);
    EXPECT_EQ(warned.err, "Unrecognized option: -frobnicate=3\n");
    EXPECT_NE(warned.out.find("Usage: "), std::string::npos);
    EXPECT_NE(warned.out.find("Weight: 5060.93\n"), std::string::npos);
}

TEST_F(Program, OptionsWithoutTheirValueAreRefused)
{
    const Outcome failed = run("-import");
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err, "Option -import needs a file name\n");
    EXPECT_EQ(run("a.truss b.truss").err, "Only one document can be opened, not also 'b.truss'\n");
}

TEST_F(Program, FileNamesAreTheSameInEveryLocale)
{
    for (const char* locale : {"LC_ALL=C", "LC_ALL=C.utf8"})
    {
        EXPECT_EQ(run("-import=" + data + "/tenbar.csv -save=Brücke.truss", locale).status, 0);
        EXPECT_TRUE(directory.has("Brücke.truss")) << locale;
        EXPECT_EQ(run("-script=fehlt-ä.txt", locale).err, "Failed to open file: 'fehlt-ä.txt'\n") << locale;
    }
}
} // namespace
