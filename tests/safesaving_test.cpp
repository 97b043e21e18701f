// SPDX-License-Identifier: MIT
// Saving a document to a real file and opening it again, on a platform that moves and deletes real files.
#include <kel/branding.h>
#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/filewriter.h>
#include <kel/interrupted.h>
#include <kel/reader.h>
#include <kel/writer.h>

#include "support/installed.h"
#include "support/persistable.h"
#include "support/problem.h"
#include "support/scopedlocale.h"
#include "support/streambuffers.h"
#include "support/temporarydirectory.h"
#include "support/testplatform.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

class SafeSavingTest : public testing::Test
{
protected:
    void SetUp() override { save("model.x", "first"); }

    /// Saves a document with one node.
    void save(const std::string& file, const std::string& name)
    {
        Document document;
        document.add(new Node(name));
        save(file, document);
    }

    void save(const std::string& file, Document& document)
    {
        FileWriter writer;
        writer.open(getFile(file), true)->writeObj(&document);
        writer.close();
    }

    /// The name of the one node in a saved document.
    std::string open(const std::string& file)
    {
        FileReader reader;
        const std::unique_ptr<Serializable> root(reader.open(getFile(file), true)->perform());
        const auto& document = dynamic_cast<const Document&>(*root);
        EXPECT_EQ(document.size(), 1u);
        return dynamic_cast<const Node*>((*document.begin()).second)->name.toUtf8();
    }

    Kel::File getFile(const std::string& name) const
    {
        Ztring path;
        path.fromUtf8(m_directory / name);
        return path;
    }

    std::set<std::string> getFiles() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_directory.getPath()))
            names.insert(entry.path().filename().string());
        return names;
    }

    PersistableGuard m_guard;
    TestStatus m_status;
    Installed<TestPlatform> m_platform;
    TemporaryDirectory m_directory;
};

TEST_F(SafeSavingTest, SavedDocumentIsOpenedAgain)
{
    EXPECT_EQ(open("model.x"), "first");
    EXPECT_EQ(getFiles(), std::set<std::string>{"model.x"});
}

TEST_F(SafeSavingTest, SavingAgainReplacesTheFile)
{
    save("model.x", "second");
    EXPECT_EQ(open("model.x"), "second");
    EXPECT_EQ(getFiles(), std::set<std::string>{"model.x"});
}

TEST_F(SafeSavingTest, ObjectThatCannotBeWrittenLeavesTheOldFile)
{
    Document document;
    auto* const broken = new Scripted();
    broken->onWrite = [](Writer&) { Problem::throwProblem("broken"); };
    document.add(new Node("new"));
    document.add(broken);
    EXPECT_PROBLEM(save("model.x", document), "broken");
    EXPECT_EQ(open("model.x"), "first");
    EXPECT_EQ(getFiles(), std::set<std::string>{"model.x"});
}

TEST_F(SafeSavingTest, InterruptedSavingLeavesTheOldFile)
{
    m_status.setInterrupted();
    EXPECT_THROW(save("model.x", "second"), Interrupted);
    m_status.resetInterrupts();
    EXPECT_EQ(open("model.x"), "first");
    EXPECT_EQ(getFiles(), std::set<std::string>{"model.x"});
}

TEST_F(SafeSavingTest, FailedMoveLeavesTheCompleteTemporaryFile)
{
    m_platform->failingCall = "moveFile";
    EXPECT_PROBLEM(save("model.x", "second"), "failed");
    EXPECT_EQ(getFiles(), std::set<std::string>{"model.x.tmp"});
    EXPECT_EQ(open("model.x.tmp"), "second");
}

TEST_F(SafeSavingTest, ArmedStreamEndsTheSaveWithTheFirstFailingWrite)
{
    std::filesystem::create_symlink("/dev/full", m_directory / "model.x.tmp");
    Document document;
    unsigned written = 0;
    for (unsigned i = 0; i < 1000; ++i)
    {
        auto* const counting = new Scripted();
        counting->onWrite = [&written](Writer& out)
        {
            ++written;
            out.write(Ztring(std::string(100, 'x')));
        };
        document.add(counting);
    }
    {
        FileWriter file;
        Writer* const writer = file.open(getFile("model.x"), false);
        writer->getOut().exceptions(std::ios::badbit);
        EXPECT_THROW(writer->writeObj(&document), std::ios_base::failure);
    }
    EXPECT_LT(written, 1000u);
    EXPECT_EQ(open("model.x"), "first");
    EXPECT_EQ(getFiles(), std::set<std::string>{"model.x"});
}

TEST_F(SafeSavingTest, TargetThatIsADirectoryFailsInThePlatform)
{
    std::filesystem::create_directory(m_directory / "folder");
    m_directory.write("folder/file", "");
    EXPECT_PROBLEM(save("folder", "second"), "Failed to delete");
    EXPECT_TRUE(m_directory.has("folder/file"));
}

TEST_F(SafeSavingTest, PathBeyondAsciiIsOneFileInEveryLocale)
{
    for (const char* const locale : {"C", "C.utf8"})
    {
        const ScopedLocale scope(locale);
        save("mod\xc3\xa8le.x", locale);
        EXPECT_EQ(open("mod\xc3\xa8le.x"), locale);
    }
    EXPECT_EQ(getFiles(), (std::set<std::string>{"model.x", "mod\xc3\xa8le.x"}));
}

TEST_F(SafeSavingTest, FileDoesNotDependOnTheGlobalLocale)
{
    Document document;
    auto* const node = new Node("node");
    node->x = 1234567.5;
    document.add(node);
    std::filesystem::create_directory(m_directory / "foreign");
    {
        const ForeignLocale foreign;
        save("foreign/model.x", document);
    }
    FileReader reader;
    const std::unique_ptr<Serializable> root(reader.open(getFile("foreign/model.x"), false)->perform());
    const auto& read = dynamic_cast<const Document&>(*root);
    EXPECT_EQ(dynamic_cast<const Node*>((*read.begin()).second)->x, 1.23457e6);
}

TEST_F(SafeSavingTest, FileOfAnotherProductIsRefused)
{
    Branding& branding = *Branding::getSingleton();
    branding.set("Maker", "Other", "other", "oth", "", "", "", "", "");
    EXPECT_PROBLEM(open("model.x"), "Expecting: Other");
    save("other.x", "theirs");
    EXPECT_EQ(open("other.x"), "theirs");
    EXPECT_EQ(m_directory.read("other.x").substr(3, 25), "Other Copyright (c) Maker");
}

TEST_F(SafeSavingTest, CutFileIsNotOpened)
{
    const std::string whole = m_directory.read("model.x");
    m_directory.write("cut.x", whole.substr(0, whole.size() - 10));
    EXPECT_THROW(open("cut.x"), Problem);
}
