// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/args.h>

#include "support/catalogue.h"
#include "support/installed.h"
#include "support/problem.h"
#include "support/testlog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Args of a program called with these words, the first being its name.
Args makeArgs(std::vector<std::string> words)
{
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    return Args(static_cast<unsigned int>(argv.size()), argv.data());
}

std::vector<std::string> getRemaining(const Args& args)
{
    Array<Ztring> remaining;
    args.getRemaining(remaining);
    std::vector<std::string> names;
    for (const Ztring& name : remaining)
        names.push_back(name.toUtf8());
    return names;
}

std::string getHelp(const Args& args)
{
    std::ostringstream out;
    args.presentHelp(out);
    return out.str();
}

const char* const s_help = "Usage: prog [options] [<startup file>]\n\nOptions:\n[-help] usage message\n";

struct ArgsReportTest : testing::Test
{
    Installed<TestLog> log;
};
} // namespace

TEST(Args, TakesOptionsFromTheWordsAfterTheFirst)
{
    const Args args = makeArgs({"prog", "-fast", "-out=x.dat"});
    EXPECT_EQ(args.size(), 2u);
    EXPECT_FALSE(args.has("prog"));
    EXPECT_TRUE(args.has("-fast"));
    EXPECT_EQ(args.get("-fast"), "");
    EXPECT_EQ(args.get("-out"), "x.dat");
}

TEST(Args, HasAProgramNameAndItsHelpLineWithoutAnyWord)
{
    const Args args = makeArgs({});
    EXPECT_TRUE(args.empty());
    EXPECT_EQ(getHelp(args), "Usage: None [options] [<startup file>]\n\nOptions:\n[-help] usage message\n");
}

TEST(Args, TakesOptionsFromALine)
{
    const Args args("-fast,,-out=x y,", ',');
    EXPECT_THAT(getRemaining(args), ElementsAre("-fast", "-out"));
    EXPECT_EQ(args.get("-out"), "x y");
    EXPECT_EQ(getHelp(args), "Usage: None [options] [<startup file>]\n\nOptions:\n");
}

TEST(Args, EmptyLineGivesNothing)
{
    const Args args("", ' ');
    EXPECT_TRUE(args.empty());
    EXPECT_EQ(getHelp(args), "Usage: None [options] [<startup file>]\n\nOptions:\n");
}

TEST(Args, SplitsAtTheFirstEqualsSign)
{
    const Args args = makeArgs({"prog", "-x=a=b", "=y", "-z="});
    EXPECT_EQ(args.get("-x"), "a=b");
    EXPECT_EQ(args.get(""), "y");
    EXPECT_EQ(args.get("-z"), "");
    EXPECT_EQ(args.size(), 3u);
}

TEST(Args, LaterWordOverwritesTheValue)
{
    Args args = makeArgs({"prog", "-a=1", "-a=2", "file.dat"});
    EXPECT_EQ(args.get("-a"), "2");
    EXPECT_THAT(getRemaining(args), ElementsAre("-a", "file.dat"));
    args.add("-a");
    EXPECT_EQ(args.get("-a"), "");
    args.remove("-a");
    EXPECT_THAT(getRemaining(args), ElementsAre("file.dat"));
}

TEST(Args, GettingAnAbsentOptionFails)
{
    const Args args = makeArgs({"prog"});
    EXPECT_ASSERTION(args.get("-a"), "findIt != m_args.end()");
}

TEST(Args, MatchesNameAndValueExactly)
{
    const Args args = makeArgs({"prog", "-mode=fast", "-flag"});
    EXPECT_TRUE(args.matches("-mode", "fast"));
    EXPECT_FALSE(args.matches("-mode", "Fast"));
    EXPECT_FALSE(args.matches("-mode", ""));
    EXPECT_TRUE(args.matches("-flag", ""));
    EXPECT_FALSE(args.matches("-other", ""));
}

TEST(Args, RemovingConsumesAndIgnoresWhatIsAbsent)
{
    Args args = makeArgs({"prog", "-a"});
    args.remove("-b");
    EXPECT_EQ(args.size(), 1u);
    args.remove("-a");
    EXPECT_TRUE(args.empty());
    EXPECT_FALSE(args.has("-a"));
}

TEST(Args, RemainingNamesComeInByteOrderBehindWhatIsThere)
{
    const Args args = makeArgs({"prog", "b", "B", "-c=1", "a"});
    Array<Ztring> out;
    out.push_back("first");
    args.getRemaining(out);
    EXPECT_THAT(std::vector<Ztring>(out.begin(), out.end()), ElementsAre("first", "-c", "B", "a", "b"));
}

TEST(Args, HelpListsTheLinesAsTheyWereAdded)
{
    Args args = makeArgs({"prog"});
    args.addHelp("[-z] last letter");
    args.addHelp("[-a] first letter");
    EXPECT_EQ(getHelp(args), std::string(s_help) + "[-z] last letter\n[-a] first letter\n");
}

TEST_F(ArgsReportTest, UnrecognizedOptionsAreLoggedAsOneWarningAndRemoved)
{
    Args args = makeArgs({"prog", "-foo", "-bar=3", "input"});
    EXPECT_TRUE(args.checkUnrecognized());
    EXPECT_THAT(log->messages,
                ElementsAre(Pair(Message::Warning, "Unrecognized option: -bar=3\nUnrecognized option: -foo\n")));
    EXPECT_THAT(getRemaining(args), ElementsAre("input"));
}

TEST_F(ArgsReportTest, NothingUnrecognizedIsNotLogged)
{
    Args args = makeArgs({"prog", "input", "=y"});
    EXPECT_FALSE(args.checkUnrecognized());
    EXPECT_THAT(log->messages, IsEmpty());
    EXPECT_EQ(args.size(), 2u);
}

TEST_F(ArgsReportTest, HelpIsLoggedWhenAskedFor)
{
    Args args = makeArgs({"prog", "-help"});
    args.checkHelpUnrecognized();
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Info, s_help)));
    EXPECT_TRUE(args.empty());
}

TEST_F(ArgsReportTest, HelpFollowsUnrecognizedOptions)
{
    Args args = makeArgs({"prog", "-foo", "-bar=3", "input"});
    args.checkHelpUnrecognized();
    EXPECT_THAT(log->messages,
                ElementsAre(Pair(Message::Warning, "Unrecognized option: -bar=3\nUnrecognized option: -foo\n"),
                            Pair(Message::Info, s_help)));
}

TEST_F(ArgsReportTest, HelpIsNotLoggedWithoutNeed)
{
    Args args = makeArgs({"prog", "input"});
    args.checkHelpUnrecognized();
    EXPECT_THAT(log->messages, IsEmpty());
}

TEST_F(ArgsReportTest, TextsAreTranslatedBeforeTheyAreFilled)
{
    const Catalogue catalogue({{"None", "Keiner"},
                               {"[%1] usage message", "[%1] Hilfetext"},
                               {"Usage: %1 [options] [<startup file>]", "Aufruf: %1 [Optionen] [<Datei>]"},
                               {"Options:", "Optionen:"},
                               {"Unrecognized option: %1", "Unbekannt: %1"}});
    Args args = makeArgs({});
    args.add("-foo=1");
    args.checkHelpUnrecognized();
    EXPECT_THAT(
        log->messages,
        ElementsAre(Pair(Message::Warning, "Unbekannt: -foo=1\n"),
                    Pair(Message::Info, "Aufruf: Keiner [Optionen] [<Datei>]\n\nOptionen:\n[-help] Hilfetext\n")));
}
