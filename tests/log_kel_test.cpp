// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/log_kel.h>

#include <kel/problem.h>

#include "support/installed.h"
#include "support/problem.h"
#include "support/temporarydirectory.h"
#include "support/testlog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Writes what it is given into the error file.
class FileLog : public Kel::Log
{
public:
    void append(const Ztring& text, Message::Type) override
    {
        if (m_stdErr)
            *m_stdErr << text << std::flush;
    }
};
} // namespace

TEST(Log, IsMadeOnceWhereTheApplicationHasNone)
{
    DynamicFactory& factory = DynamicFactory::getSingleton();
    EXPECT_FALSE(factory.hasKey(Kel::Log::getStaticKey()));
    Kel::Log* const log = Kel::Log::getSingleton();
    EXPECT_EQ(Kel::Log::getSingleton(), log);
    EXPECT_EQ(factory.getPtr(Kel::Log::getStaticKey()), log);
    log->append("dropped", Message::Info);
    log->show();
    Bulletin::destroy(factory.removeByKey(Kel::Log::getStaticKey()), false);
}

TEST(Log, ApplicationInstallsItsOwn)
{
    const Installed<TestLog> log;
    EXPECT_EQ(Kel::Log::getSingleton(), &*log);
    Kel::Log::getSingleton()->append("hello", Message::Warning);
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Warning, "hello")));
}

TEST(Log, CarriesItsKey)
{
    EXPECT_EQ(Kel::Log().getKey(), Kel::Log::getStaticKey());
    EXPECT_EQ(Kel::Log::getStaticKey().getName(), "Kel::Log");
}

TEST(Log, ProblemIsLoggedWithItsAnnotations)
{
    TestLog log;
    Problem problem("M");
    problem.annotate("C1");
    log.append(problem, Message::Error);
    EXPECT_THAT(log.messages, ElementsAre(Pair(Message::Error, "C1\nM")));
}

TEST(Log, ErrorFileIsWrittenAnew)
{
    const TemporaryDirectory directory;
    const std::string path = directory.write("err.txt", "old text");
    FileLog log;
    log.append("before", Message::Error);
    log.setStdErr(path);
    log.append("boom", Message::Error);
    EXPECT_EQ(directory.read("err.txt"), "boom");
}

TEST(Log, ErrorFileIsSetOnce)
{
    const TemporaryDirectory directory;
    FileLog log;
    log.setStdErr("");
    log.setStdErr(directory / "err.txt");
    EXPECT_ASSERTION(log.setStdErr(directory / "other.txt"), "!valid(m_stdErr)");
    EXPECT_ASSERTION(log.setStdErr(""), "!valid(m_stdErr)");
    EXPECT_FALSE(directory.has("other.txt"));
}

TEST(Log, ErrorFileThatCannotBeOpenedIsNoFailure)
{
    const TemporaryDirectory directory;
    FileLog log;
    log.setStdErr(directory / "missing/err.txt");
    log.append("boom", Message::Error);
    EXPECT_ASSERTION(log.setStdErr(directory / "err.txt"), "!valid(m_stdErr)");
}

TEST(Log, ErrorFileIsNamedInUtf8)
{
    const TemporaryDirectory directory;
    Ztring path;
    path.fromUtf8(directory / "h\xC3\xA4user.txt");
    FileLog log;
    log.setStdErr(path);
    EXPECT_TRUE(directory.has("h\xC3\xA4user.txt"));
}

TEST(Log, AnotherBulletinUnderItsKeyIsNoLog)
{
    DynamicFactory& factory = DynamicFactory::getSingleton();
    factory.add(new Bulletin(Kel::Log::getStaticKey()));
    EXPECT_ASSERTION(Kel::Log::getSingleton(), "!hasKey(key)");
    Bulletin::destroy(factory.removeByKey(Kel::Log::getStaticKey()), false);
}

TEST(Log, ErrorFileIsCompleteWhenTheLogIsGone)
{
    /// Leaves what it writes to the file's buffer.
    class LazyLog : public Kel::Log
    {
        void append(const Ztring& text, Message::Type) override { *m_stdErr << text; }
    };
    const TemporaryDirectory directory;
    auto log = std::make_unique<LazyLog>();
    Kel::Log& base = *log;
    base.setStdErr(directory / "err.txt");
    base.append(Ztring("boom"), Message::Error);
    log.reset();
    EXPECT_EQ(directory.read("err.txt"), "boom");
}
