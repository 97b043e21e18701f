// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/file_kel.h>

#include <kel/problem.h>
#include <kel/texthelper.h>

#include "support/catalogue.h"
#include "support/problem.h"
#include "support/scopedlocale.h"
#include "support/temporarydirectory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace
{
using Kel::File;

struct PathCase
{
    const char* m_path;
    const char* m_fileName;
    const char* m_directory;
    const char* m_name;
    const char* m_extension;
};

const PathCase s_paths[] = {
    {"/home/me/truss.kel", "truss.kel", "/home/me", "truss", "kel"},
    {"name.txt", "name.txt", "name.txt", "name", "txt"},
    {"a/b\\c.txt", "c.txt", "a/b", "c", "txt"},
    {"a\\b/c.txt", "c.txt", "a\\b", "c", "txt"},
    {"name", "name", "name", "name", ""},
    {"a.b/c", "c", "a.b", "a", "b/c"},
    {"a.tar.gz", "a.tar.gz", "a.tar.gz", "a.tar", "gz"},
    {"dir/", "", "dir", "", ""},
    {"/name", "name", "", "name", ""},
    {"dir/.hidden", ".hidden", "dir", "", "hidden"},
    {"name.", "name.", "name.", "name", ""},
    {"", "", "", "", ""},
};

Ztring withExtension(const Ztring& path, const Ztring& extension)
{
    File file(path);
    file.addExtension(extension);
    return file.getPath();
}

Ztring withoutExtension(const Ztring& path)
{
    File file(path);
    file.removeExtension();
    return file.getPath();
}

Ztring withoutExtension(const Ztring& path, const Ztring& extension)
{
    File file(path);
    file.removeExtension(extension);
    return file.getPath();
}

Ztring fromUtf8(const std::string& bytes)
{
    Ztring text;
    text.fromUtf8(bytes);
    return text;
}

/// Files below a directory of their own.
class FileOnDisk : public testing::Test
{
protected:
    File at(const std::string& name) const { return File(fromUtf8(m_directory / name)); }

    std::string openFailed(const std::string& name) const
    {
        return "Failed to open file: '" + (m_directory / name) + "'";
    }

    std::string copied(const std::string& bytes) const
    {
        m_directory.write("text", bytes);
        std::ostringstream out;
        at("text").appendTo(out);
        EXPECT_TRUE(out.good());
        return out.str();
    }

    TemporaryDirectory m_directory;
};
} // namespace

TEST(File, HoldsThePathAsItWasGiven)
{
    File file("a/b.txt");
    EXPECT_EQ(file.getPath(), "a/b.txt");
    EXPECT_FALSE(file.empty());
    file.clear();
    EXPECT_EQ(file.getPath(), "");
    EXPECT_TRUE(file.empty());
}

TEST(File, IsCopiedAndAssigned)
{
    const File file("a");
    File copy(file);
    copy.addExtension("txt");
    EXPECT_EQ(file.getPath(), "a");
    copy = file;
    EXPECT_EQ(copy.getPath(), "a");
}

TEST(File, TakesAnotherPath)
{
    File file("a");
    file = Ztring("b");
    EXPECT_EQ(file.getPath(), "b");
    file = "c";
    EXPECT_EQ(file.getPath(), "c");
    file = std::string("d");
    EXPECT_EQ(file.getPath(), "d");
    file = file.getPath();
    EXPECT_EQ(file.getPath(), "d");
}

TEST(File, TakesThePathApart)
{
    for (const PathCase& path : s_paths)
    {
        SCOPED_TRACE(path.m_path);
        const File file(path.m_path);
        EXPECT_EQ(file.getFileName(), path.m_fileName);
        EXPECT_EQ(file.getDirectory(), path.m_directory);
        EXPECT_EQ(file.getName(), path.m_name);
        EXPECT_EQ(file.getExtension(), path.m_extension);
        EXPECT_EQ(file.getPath(), path.m_path);
    }
}

TEST(File, EndsInFindsTheExtensionAnywhereInEitherCase)
{
    EXPECT_TRUE(File("x.txt").endsIn("txt"));
    EXPECT_TRUE(File("x.txt").endsIn("TXT"));
    EXPECT_TRUE(File("x.TXT").endsIn("txt"));
    EXPECT_TRUE(File("x.txt.bak").endsIn("TXT"));
    EXPECT_FALSE(File("x.text").endsIn("txt"));
    EXPECT_FALSE(File("xtxt").endsIn("txt"));
    EXPECT_FALSE(File("x").endsIn(""));
    EXPECT_TRUE(File("x.").endsIn(""));
}

TEST(File, AddExtensionAppendsWhatIsMissing)
{
    EXPECT_EQ(withExtension("x", "txt"), "x.txt");
    EXPECT_EQ(withExtension("x.TXT", "txt"), "x.TXT");
    EXPECT_EQ(withExtension("x.txt.bak", "txt"), "x.txt.bak");
    EXPECT_EQ(withExtension("x.dat", "txt"), "x.dat.txt");
}

TEST(File, RemoveExtensionCutsAtTheLastDot)
{
    EXPECT_EQ(withoutExtension("a.tar.gz"), "a.tar");
    EXPECT_EQ(withoutExtension("a.b/c"), "a");
    EXPECT_EQ(withoutExtension("a"), "a");
    EXPECT_EQ(withoutExtension(""), "");
}

TEST(File, RemoveExtensionErasesTheLastOccurrenceOfTheGivenOne)
{
    EXPECT_EQ(withoutExtension("x.txt", "txt"), "x");
    EXPECT_EQ(withoutExtension("x.TXT.bak", "txt"), "x.bak");
    EXPECT_EQ(withoutExtension("x.txt.txt.bak", "txt"), "x.txt.bak");
    EXPECT_EQ(withoutExtension("x.dat", "txt"), "x.dat");
}

TEST(File, QuotedFileStandsBetweenDoubleQuotes)
{
    EXPECT_EQ(File("a b.txt").getQuotedFile(), "\"a b.txt\"");
    EXPECT_EQ(File("a b.txt").getQuotedFile(), TextHelper::addQuotes("a b.txt", "\""));
}

TEST(FileFind, GivesTheLastOccurrenceInEitherCase)
{
    EXPECT_EQ(Kel::find("ab", wxString("xABxaBx")), 4u);
    EXPECT_EQ(Kel::find("AB", wxString("xab")), 1u);
    EXPECT_EQ(Kel::find("ab", wxString("a")), wxString::npos);
    EXPECT_EQ(Kel::find("", wxString("ab")), 2u);
}

TEST(FileFind, TriesUpperCaseWhereLowerCaseFindsNothing)
{
    const ScopedLocale locale("C.utf8");
    // A final sigma differs from the sigma in lower case only.
    EXPECT_EQ(Kel::find(Ztring(wxString(L"\u03C2")), wxString(L"a\u03C3")), 1u);
}

TEST_F(FileOnDisk, IsOpenedForReading)
{
    m_directory.write("in", "a\r\nb");
    std::ifstream stream;
    at("in").open(stream);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), "a\r\nb");
}

TEST_F(FileOnDisk, IsOpenedForWritingAndTruncated)
{
    m_directory.write("out", "before");
    std::ofstream stream;
    at("out").open(stream);
    stream << "a\n";
    stream.close();
    EXPECT_EQ(m_directory.read("out"), "a\n");
}

TEST_F(FileOnDisk, AStreamThatFailedBeforeIsGoodAfterOpening)
{
    m_directory.write("in", "a");
    std::ifstream stream;
    stream.setstate(std::ios::failbit);
    at("in").open(stream);
    EXPECT_TRUE(stream.good());
}

TEST_F(FileOnDisk, OpeningForReadingFailsWithTheMessage)
{
    std::ifstream stream;
    EXPECT_PROBLEM(at("absent").open(stream), openFailed("absent"));
    EXPECT_TRUE(stream.fail());
    EXPECT_FALSE(stream.is_open());
    EXPECT_FALSE(m_directory.has("absent"));
}

TEST_F(FileOnDisk, OpeningForWritingFailsWithTheMessage)
{
    std::ofstream stream;
    EXPECT_PROBLEM(at("absent/out").open(stream), openFailed("absent/out"));
    EXPECT_TRUE(stream.fail());
}

TEST_F(FileOnDisk, AStreamThatIsOpenAlreadyFails)
{
    m_directory.write("a", "a");
    m_directory.write("b", "b");
    std::ifstream stream;
    at("a").open(stream);
    EXPECT_PROBLEM(at("b").open(stream), openFailed("b"));
}

TEST_F(FileOnDisk, AStreamThatThrowsByItselfFailsWithTheMessageToo)
{
    std::ifstream in;
    in.exceptions(std::ios::failbit | std::ios::badbit);
    EXPECT_PROBLEM(at("absent").open(in), openFailed("absent"));
    EXPECT_EQ(in.exceptions(), std::ios::failbit | std::ios::badbit);
    EXPECT_TRUE(in.fail());
    std::ofstream out;
    out.exceptions(std::ios::failbit);
    EXPECT_PROBLEM(at("absent/out").open(out), openFailed("absent/out"));
}

TEST_F(FileOnDisk, AHandleIsOpenedWithTheMode)
{
    m_directory.write("log", "a");
    std::FILE* const handle = at("log").fOpen("a");
    std::fputs("b", handle);
    std::fclose(handle);
    EXPECT_EQ(m_directory.read("log"), "ab");
}

TEST_F(FileOnDisk, OpenWriteTruncatesAndOpenReadReads)
{
    m_directory.write("text", "before");
    std::FILE* const writing = at("text").openWrite();
    std::fputs("a", writing);
    std::fclose(writing);
    std::FILE* const reading = at("text").openRead();
    EXPECT_EQ(std::fgetc(reading), 'a');
    EXPECT_EQ(std::fgetc(reading), EOF);
    std::fclose(reading);
}

TEST_F(FileOnDisk, AHandleThatCannotBeOpenedFailsWithTheMessage)
{
    EXPECT_PROBLEM(at("absent").openRead(), openFailed("absent"));
    EXPECT_PROBLEM(at("absent/out").openWrite(), openFailed("absent/out"));
    EXPECT_PROBLEM(at("absent").fOpen("r"), openFailed("absent"));
}

TEST_F(FileOnDisk, APathWithAZeroByteIsNoOtherFile)
{
    using namespace std::string_literals;
    m_directory.write("text", "a");
    const File file{Ztring(m_directory / "text\0more"s)};
    const std::string message = openFailed("text\0more"s);
    std::ifstream in;
    std::ofstream out;
    std::ostringstream copied;
    EXPECT_PROBLEM(file.open(in), message);
    EXPECT_PROBLEM(file.open(out), message);
    EXPECT_PROBLEM(file.fOpen("r"), message);
    EXPECT_PROBLEM(file.appendTo(copied), message);
    EXPECT_TRUE(in.fail());
    EXPECT_TRUE(out.fail());
    EXPECT_EQ(m_directory.read("text"), "a");
}

TEST_F(FileOnDisk, OnePathIsOneFileInEveryLocale)
{
    const std::string name = "\xC3\xA9.txt";
    const File file = at(name);
    std::vector<std::function<void()>> operations = {
        [&]
        {
            std::ofstream stream;
            file.open(stream);
        },
        [&] { std::fclose(file.openWrite()); },
        [&] { std::fclose(file.fOpen("w")); },
    };
    for (const char* const localeName : {"C", "C.utf8"})
        for (const auto& create : operations)
        {
            const ScopedLocale locale(localeName);
            create();
            EXPECT_TRUE(m_directory.has(name));
            std::ifstream stream;
            file.open(stream);
            std::fclose(file.openRead());
            std::filesystem::remove(m_directory / name);
        }
}

TEST_F(FileOnDisk, AppendToCopiesTheBytes)
{
    EXPECT_EQ(copied("a\r\nb\n\xFF"), "a\r\nb\n\xFF");
    EXPECT_EQ(copied(""), "");
}

TEST_F(FileOnDisk, AppendToCopiesLongFiles)
{
    for (const std::size_t size : {4095u, 4096u, 4097u, 8192u, 100000u})
    {
        std::string bytes;
        for (std::size_t i = 0; i < size; ++i)
            bytes += static_cast<char>('a' + i % 23);
        EXPECT_EQ(copied(bytes), bytes) << size;
    }
}

TEST_F(FileOnDisk, AppendToStopsAtAZeroByte)
{
    EXPECT_EQ(copied(std::string("ab\0cd\0", 6)), "ab");
    EXPECT_EQ(copied(std::string("\0ab", 3)), "");
    EXPECT_EQ(copied(std::string(4096, 'a') + '\0' + "b"), std::string(4096, 'a'));
}

TEST_F(FileOnDisk, AppendToAppends)
{
    m_directory.write("text", "b");
    std::ostringstream out;
    out << "a";
    at("text").appendTo(out);
    out << "c";
    EXPECT_EQ(out.str(), "abc");
}

TEST_F(FileOnDisk, AppendToAFailedStreamCopiesNothing)
{
    m_directory.write("text", "a");
    for (const std::ios::iostate state : {std::ios::failbit, std::ios::badbit})
    {
        std::ostringstream out;
        out.setstate(state);
        at("text").appendTo(out);
        EXPECT_EQ(out.str(), "");
        EXPECT_EQ(out.rdstate(), state);
    }
}

TEST_F(FileOnDisk, AppendToFailsWithTheMessageWhateverTheStream)
{
    std::ostringstream out;
    EXPECT_PROBLEM(at("absent").appendTo(out), openFailed("absent"));
    EXPECT_TRUE(out.good());
    out.setstate(std::ios::failbit);
    EXPECT_PROBLEM(at("absent").appendTo(out), openFailed("absent"));
}

TEST(File, AddsReadingOrSavingAsContext)
{
    Problem reading("M");
    File("a.txt").annotateRead(reading);
    EXPECT_EQ(reading.getMessage(), "Failed to read file: 'a.txt'\nM");
    Problem saving("M");
    File("a.txt").annotateWrite(saving);
    EXPECT_EQ(saving.getMessage(), "Failed to save file: 'a.txt'\nM");
}

TEST(File, ThrowsItsMessages)
{
    const File file("a.txt");
    EXPECT_PROBLEM(file.throwOpenFailed(), "Failed to open file: 'a.txt'");
    EXPECT_PROBLEM(file.throwReadingCorrupt(), "Failed to read file: 'a.txt'");
    EXPECT_PROBLEM(file.throwWritingCorrupt(), "Failed to save file: 'a.txt'");
}

TEST(File, ACorruptFileIsAnEmptyProblemWithContext)
{
    try
    {
        File("a.txt").throwReadingCorrupt();
    }
    catch (const Problem& problem)
    {
        EXPECT_STREQ(problem.what(), "");
        EXPECT_FALSE(problem.hasDetails());
    }
}

TEST(File, MessagesAreTranslated)
{
    const Catalogue catalogue{{"Failed to open file: '%1'", "'%1' geht nicht auf"},
                              {"Failed to read file: '%1'", "'%1' ist nicht lesbar"},
                              {"Failed to save file: '%1'", "'%1' ist nicht gesichert"}};
    const File file("a.txt");
    EXPECT_PROBLEM(file.throwOpenFailed(), "'a.txt' geht nicht auf");
    EXPECT_PROBLEM(file.throwReadingCorrupt(), "'a.txt' ist nicht lesbar");
    EXPECT_PROBLEM(file.throwWritingCorrupt(), "'a.txt' ist nicht gesichert");
}
