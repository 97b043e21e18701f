// SPDX-License-Identifier: MIT
// A platform and a log that throw: the exception arrives as it is where it is laid down to, and no file is lost.
#include <kel/args.h>
#include <kel/autofiledelete.h>
#include <kel/branding.h>
#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/filewriter.h>
#include <kel/formdataposter.h>
#include <kel/parallel.h>
#include <kel/stdouterr.h>

#include "support/bomb.h"
#include "support/installed.h"
#include "support/persistable.h"
#include "support/temporarydirectory.h"
#include "support/testlog.h"
#include "support/testplatform.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>

namespace
{
/// Throws before and after what it does to a file.
class ThrowingPlatform : public TestPlatform
{
public:
    void execute(const Ztring&, bool, bool) override { bomb.call(); }
    void deleteFile(const Kel::File& file, bool flag) override
    {
        bomb.call();
        TestPlatform::deleteFile(file, flag);
        bomb.call();
    }
    void moveFile(const Kel::File& from, const Kel::File& to, bool flag) override
    {
        bomb.call();
        TestPlatform::moveFile(from, to, flag);
        bomb.call();
    }
    void startTimer(Task*, unsigned int) override { bomb.call(); }
    void postForm(const Ztring&, const Ztring&, const Ztring&, const Ztring&, FormDataPoster&, Ztring&) override
    {
        bomb.call();
    }
    using Platform::startTimer;
    std::string getOsName() override
    {
        bomb.call();
        return TestPlatform::getOsName();
    }
    std::string getReleaseName() override
    {
        bomb.call();
        return TestPlatform::getReleaseName();
    }

    Bomb bomb;
};

class ThrowingServices : public testing::Test
{
protected:
    ~ThrowingServices() override { Persistable::deleteAll(); }

    void write(FileWriter& writer, const std::string& name)
    {
        Node node(name);
        writer.open(getFile(), true)->writeObj(&node);
    }

    void save(const std::string& name)
    {
        FileWriter writer;
        write(writer, name);
        writer.close();
    }

    /// The name in a file of the directory.
    std::string open(const std::string& file) const
    {
        FileReader reader;
        const Kel::File opened(Ztring(directory / file));
        const std::unique_ptr<Serializable> root(reader.open(opened, true)->perform());
        return dynamic_cast<const Node&>(*root).name.toUtf8();
    }

    Kel::File getFile() const { return Ztring(directory / "model"); }

    TemporaryDirectory directory;
    TestStatus status;
    Installed<ThrowingPlatform> platform;
    Installed<TestLog> log;
};
} // namespace

TEST_F(ThrowingServices, PlatformThatFailsToReplaceAFileLeavesTheWholeNewOne)
{
    // Before and after the deletion of the old file, then before and after the move of the new one.
    forEach(4,
            [&](std::size_t call, Kind kind)
            {
                save("old");
                const std::string old = directory.read("model");
                FileWriter writer;
                write(writer, "new");
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { writer.close(); }), getName(kind));
                if (call == 1)
                {
                    EXPECT_EQ(directory.read("model"), old);
                }
                EXPECT_EQ(directory.has("model"), call == 1 || call == 4);
                EXPECT_EQ(open(call == 4 ? "model" : "model.tmp"), "new");
                // Closing again makes good what is left to be done.
                const std::string gone = "Problem Failed to open file: '" + directory / "model.tmp" + "'";
                EXPECT_EQ(caughtBy([&] { writer.close(); }), call == 4 ? gone : s_nothing);
                EXPECT_EQ(open("model"), "new");
                EXPECT_FALSE(directory.has("model.tmp"));
                save("newest");
                EXPECT_EQ(open("model"), "newest");
            });
    // A file whose writer goes without another try stays complete as well.
    forEach(4,
            [&](std::size_t call, Kind kind)
            {
                save("old");
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { save("new"); }), getName(kind));
                EXPECT_EQ(open(call == 4 ? "model" : "model.tmp"), "new");
            });
}

TEST_F(ThrowingServices, PlatformThatFailsIsNotHeardByDestructors)
{
    // Before and after the deletion of a file; two of them with StdOutErr.
    forEach(4,
            [&](std::size_t call, Kind kind)
            {
                const Ztring path(directory.write("file", "text"));
                platform->bomb.arm(call, kind);
                {
                    const AutoFileDelete guard{Kel::File(path)};
                }
                EXPECT_EQ(directory.has("file"), call == 1);
                EXPECT_EQ(platform->bomb.isArmed(), call > 2);
                platform->bomb.arm(call, kind);
                {
                    const StdOutErr output(path, path);
                }
                EXPECT_FALSE(platform->bomb.isArmed());
                platform->bomb.arm(call, kind);
                {
                    FileWriter writer;
                    writer.open(path, false);
                }
                EXPECT_EQ(directory.has("file.tmp"), call == 1);
                EXPECT_EQ(platform->bomb.isArmed(), call > 2);
                platform->bomb.disarm();
            });
}

TEST_F(ThrowingServices, PlatformThatFailsIsHeardByItsCallers)
{
    forEach(1,
            [&](std::size_t call, Kind kind)
            {
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { platform->run("command", "", Kel::File(""), false, false); }), getName(kind));
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { platform->startTimer(nullptr); }), getName(kind));
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { platform->getOsBitName(); }), getName(kind));
                const Branding& branding = *Branding::getSingleton();
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { branding.createOsUrl("page"); }), getName(kind));
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { branding.createOsBitUrl("page"); }), getName(kind));
                FormDataPoster form;
                Ztring response;
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { form.postTo("where", "path", response); }), getName(kind));
            });
    forEach(2,
            [&](std::size_t call, Kind kind)
            {
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([] { Branding::getSingleton()->createEmbeddedUrl("page"); }), getName(kind));
            });
}

TEST_F(ThrowingServices, LogThatFailsIsHeardByItsCallers)
{
    Bomb bomb;
    log->onAppend = [&] { bomb.call(); };
    // The warning and the help.
    forEach(2,
            [&](std::size_t call, Kind kind)
            {
                Args args("-unknown file", ' ');
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { args.checkHelpUnrecognized(); }), getName(kind));
                EXPECT_FALSE(args.has("-unknown"));
                EXPECT_TRUE(args.has("file"));
                args.checkHelpUnrecognized();
            });
    Parallel::getSingleton()->setShowDiagnostics(true);
    // The begin, the number of threads, and the end, which is not heard.
    forEach(3,
            [&](std::size_t call, Kind kind)
            {
                log->messages.clear();
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([] { const Parallel::Info info("task", 10, 2); }),
                          call < 3 ? getName(kind) : s_nothing);
                EXPECT_FALSE(bomb.isArmed());
                // The next one is active: the one that failed is no longer.
                log->messages.clear();
                {
                    const Parallel::Info info("task", 10, 2);
                }
                EXPECT_EQ(log->messages.size(), 3u);
            });
    Parallel::getSingleton()->setShowDiagnostics(false);
}
