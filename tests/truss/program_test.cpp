// SPDX-License-Identifier: MIT
// The example application from its command line to its files.
#include <truss/support/formserver.h>
#include <truss/support/program.h>

#include <sys/stat.h>

#include <algorithm>
#include <vector>

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

TEST_F(Program, OffersWhatASaveThatDidNotEndHasLeft)
{
    run("-import=" + data + "/tenbar.csv -save=a.truss");
    run("a.truss -script=" + data + "/edits.txt -save=b.truss");
    const std::string old = directory.read("a.truss");
    const std::string left = directory.read("b.truss");

    directory.write("a.truss.tmp", left.substr(0, left.size() / 2));
    EXPECT_EQ(run("a.truss -solve").err,
              "A save of 'a.truss' did not end. It left 'a.truss.tmp', which is not whole\n");
    EXPECT_EQ(run("-recover=a.truss").err, "Failed to read file: 'a.truss.tmp': Premature end of file\n");
    EXPECT_EQ(directory.read("a.truss"), old);

    directory.write("a.truss.tmp", left);
    const Outcome opened = run("a.truss -solve");
    EXPECT_EQ(opened.status, 0);
    EXPECT_EQ(opened.err, "A save of 'a.truss' did not end. It left a whole document, 'a.truss.tmp', which "
                          "the option -recover takes\n");
    EXPECT_EQ(directory.read("a.truss"), old);
    std::filesystem::remove(directory / "a.truss"); // as on a platform that deletes before it moves
    EXPECT_EQ(run("a.truss").err, opened.err + "Failed to read file: 'a.truss': Failed to open file: 'a.truss'\n");
    const Outcome recovered = run("-recover=a.truss -save=c.truss");
    EXPECT_EQ(recovered.err, "");
    EXPECT_EQ(directory.read("a.truss"), left);
    EXPECT_FALSE(directory.has("a.truss.tmp"));
    EXPECT_EQ(afterFirstLine(directory.read("c.truss")), afterFirstLine(left));
    EXPECT_EQ(run("b.truss -recover=a.truss").err, "Only one document can be opened, not also 'b.truss'\n");
}

TEST_F(Program, APipeBesideADocumentIsNotWaitedFor)
{
    run("-import=" + data + "/tenbar.csv -save=a.truss");
    ASSERT_EQ(mkfifo((directory / "a.truss.tmp").c_str(), 0600), 0);
    const Outcome opened = run("a.truss -solve");
    EXPECT_EQ(opened.status, 0);
    EXPECT_EQ(opened.err, "");
}

TEST_F(Program, SavesWhereASymbolicLinkLeads)
{
    std::filesystem::create_directory(directory / "folder");
    run("-import=" + data + "/tenbar.csv -save=folder/a.truss");
    std::filesystem::create_symlink("folder/a.truss", directory / "link.truss");
    EXPECT_EQ(run("link.truss -script=" + data + "/edits.txt -save=link.truss").err, "");
    EXPECT_TRUE(std::filesystem::is_symlink(directory / "link.truss"));
    EXPECT_FALSE(directory.has("link.truss.tmp"));
    EXPECT_EQ(run("folder/a.truss -save=b.truss").status, 0);
    EXPECT_EQ(afterFirstLine(directory.read("b.truss")), afterFirstLine(directory.read("folder/a.truss")));
}

TEST_F(Program, ALinkThatLeadsNowhereIsReplaced)
{
    std::filesystem::create_symlink("missing/a.truss", directory / "link.truss");
    EXPECT_EQ(run("-import=" + data + "/tenbar.csv -save=link.truss").err, "");
    EXPECT_TRUE(std::filesystem::is_regular_file(directory / "link.truss"));
    EXPECT_FALSE(std::filesystem::is_symlink(directory / "link.truss"));
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
    for (const char* option : {"-help", "-recover", "-import", "-script", "-check-mesh", "-solve", "-iterative",
                               "-study", "-interleave", "-study-table", "-study-plot", "-save", "-results",
                               "-reactions", "-picture", "-view", "-report", "-bell", "-diagnostics"})
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
    EXPECT_EQ(failed.err, "Option -import needs a value\n");
    EXPECT_EQ(run("a.truss b.truss").err, "Only one document can be opened, not also 'b.truss'\n");
}

TEST_F(Program, AStudyBecomesATableAndACurve)
{
    const Outcome studied =
        run("-import=" + data + "/tenbar.csv -study=b1:20:40:5 -study-table=s.csv -study-plot=s.svg");
    EXPECT_EQ(studied.status, 0);
    const std::string table = directory.read("s.csv");
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 6);
    EXPECT_NE(directory.read("s.svg").find("</svg>"), std::string::npos);
    EXPECT_EQ(run("-import=" + data + "/tenbar.csv -study=b1:20:40:5 -interleave").out, table);
}

TEST_F(Program, OpensADocumentWithAnEqualsSignInItsName)
{
    ASSERT_EQ(run("-import=" + data + "/tenbar.csv -save=x=y.truss").status, 0);
    EXPECT_EQ(run("x=y.truss -solve").status, 0);
}

TEST_F(Program, OptionsThatNeedAnotherSaySo)
{
    EXPECT_EQ(run("-view").err, "Option -view needs option -picture\n");
    EXPECT_EQ(run("-interleave").err, "Option -interleave needs option -study\n");
}

TEST_F(Program, RingsTheBellAtTheEndWhenAskedTo)
{
    EXPECT_EQ(run("-import=" + data + "/tenbar.csv -solve -bell").err, "\a");
}

TEST_F(Program, PipesTheModelThroughAChecker)
{
    const Outcome counted = run("-import=" + data + "/tenbar.csv '-check-mesh=grep -c bar'");
    EXPECT_EQ(counted.status, 0);
    EXPECT_EQ(counted.out, "10\n");
    directory.write("strict", "echo 'bar b2 is thin' >&2\n");
    const Outcome refused = run("-import=" + data + "/tenbar.csv '-check-mesh=sh strict' -save=a.truss");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "Checking with 'sh strict' failed: bar b2 is thin\n");
    EXPECT_FALSE(directory.has("a.truss"));
}

TEST_F(Program, ShowsThePictureWithTheDesktopsProgram)
{
    std::filesystem::create_directory(directory / "bin");
    std::filesystem::permissions(directory.write("bin/xdg-open", "#!/bin/sh\necho \"$1\" >opened\necho noise >&2\n"),
                                 std::filesystem::perms::owner_all);
    const Outcome viewed = run("-import=" + data + "/tenbar.csv '-picture=my picture.svg' -view", "PATH=bin:$PATH");
    EXPECT_EQ(viewed.err, "");
    EXPECT_EQ(viewed.status, 0);
    EXPECT_EQ(directory.read("opened"), "my picture.svg\n");
}

TEST_F(Program, PostsABugReport)
{
    const FormServer server(directory.getPath());
    const Outcome reported =
        run("-import=" + data + "/tenbar.csv -save=a.truss -report=" + server.getAddress() + "/form", "no_proxy=*");
    EXPECT_EQ(reported.err, "");
    EXPECT_EQ(reported.status, 0);
    EXPECT_EQ(reported.out.rfind("The server replied: program=Truss\nversion=AppVersion:1.0.0;KelVersion:5.1.3;\n"
                                 "system=linux64 ",
                                 0),
              0u)
        << reported.out;
    EXPECT_NE(reported.out.find("\ncredit=Generated by Pinjoint's Truss on: "), std::string::npos);
    EXPECT_EQ(afterFirstLine(directory.read("document")), afterFirstLine(directory.read("a.truss")));
}

TEST_F(Program, SpeaksGermanWhenAskedTo)
{
    const Outcome solved = run("-import=" + data + "/tenbar.csv -solve", "LC_ALL=C LANGUAGE=de");
    EXPECT_EQ(solved.out, "Gewicht: 5060.93\nGrößte Verschiebung: -1.99996 in Richtung y am Knoten 'n1'\n"
                          "Größte Spannung: 25002.7 im Stab 'b5'\n");
    EXPECT_EQ(run("fehlt", "LANGUAGE=de_DE.UTF-8").err,
              "Datei ließ sich nicht lesen: 'fehlt': Datei ließ sich nicht öffnen: 'fehlt'\n");
    EXPECT_NE(run("-help", "LC_ALL=C LANGUAGE=xx:de").out.find("Modell aus CSV hinzufügen"), std::string::npos);
    EXPECT_EQ(run("-import", "LANGUAGE=en:de").err, "Option -import needs a value\n");
}

TEST_F(Program, FileNamesAreTheSameInEveryLocale)
{
    for (const char* locale : {"LC_ALL=C", "LC_ALL=C.utf8"})
    {
        EXPECT_EQ(run("-import=" + data + "/tenbar.csv -save=Brücke.truss", locale).status, 0);
        EXPECT_TRUE(directory.has("Brücke.truss")) << locale;
        EXPECT_EQ(run("Brücke.truss -solve", locale).status, 0) << locale;
        EXPECT_EQ(run("-script=fehlt-ä.txt", locale).err, "Failed to open file: 'fehlt-ä.txt'\n") << locale;
    }
}
} // namespace
