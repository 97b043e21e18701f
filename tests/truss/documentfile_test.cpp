// SPDX-License-Identifier: MIT
#include <truss/document/documentfile.h>

#include <truss/support/trusstest.h>

#include <support/tracked.h>

#include <kel/file_kel.h>
#include <kel/serializable.h>

namespace
{
class DocumentFile : public TrussTest
{
protected:
    std::string save(const std::string& name)
    {
        truss::DocumentFile::save(model(), file(name));
        return directory.read(name);
    }

    Kel::File file(const std::string& name) { return Kel::File(directory / name); }

    /// Removed first, since many file systems are slow to truncate.
    void writeBad(const std::string& bytes)
    {
        std::filesystem::remove(directory / "bad.truss");
        directory.write("bad.truss", bytes);
    }

    /// Opens the bytes in place of the document, which is to be refused; and looks that the document stays.
    Ztring refuse(const std::string& bytes)
    {
        const std::string before = toCsv();
        writeBad(bytes);
        Ztring message;
        try
        {
            document.replace(truss::DocumentFile::open(file("bad.truss")));
        }
        catch (const Problem& problem)
        {
            message = problem.getMessage();
        }
        EXPECT_EQ(toCsv(), before);
        return message;
    }

    std::string refusal(const std::string& reason) const
    {
        return "Failed to read file: '" + directory / "bad.truss" + "'\n" + reason;
    }

    static std::string replaced(std::string text, const std::string& from, const std::string& to)
    {
        EXPECT_NE(text.find(from), std::string::npos) << from;
        return text.replace(text.find(from), from.size(), to);
    }

    static std::string afterFirstLine(const std::string& text) { return text.substr(text.find('\n')); }
};

TEST_F(DocumentFile, SavedAndOpenedModelIsTheSame)
{
    importData("tenbar.csv");
    const std::string before = toCsv();
    save("a.truss");
    EXPECT_EQ(toCsv(*truss::DocumentFile::open(file("a.truss"))), before);
}

TEST_F(DocumentFile, SavedOpenedAndSavedAgainIsTheSameBytesButForTheTime)
{
    importData("tenbar.csv");
    import("node,odd,0.1,-1e-300,0.30000000000000004\nnode,\"Brücke über den Fluß\",1e300,3,4\n");
    edit("delete n3");
    edit("area b4 0.1");
    document.undo();
    document.undo();
    const std::string first = save("a.truss");
    document.replace(truss::DocumentFile::open(file("a.truss")));
    EXPECT_EQ(afterFirstLine(save("b.truss")), afterFirstLine(first));
}

TEST_F(DocumentFile, OpenedModelCanBeEditedAndUndone)
{
    importData("tenbar.csv");
    save("a.truss");
    document.replace(truss::DocumentFile::open(file("a.truss")));
    const auto before = entries();
    edit("delete n4");
    document.undo();
    EXPECT_EQ(entries(), before);
}

TEST_F(DocumentFile, AnEmptyModelIsSavedAndOpened)
{
    save("a.truss");
    EXPECT_TRUE(truss::DocumentFile::open(file("a.truss"))->empty());
}

TEST_F(DocumentFile, AFileCutAtAnyByteIsRefused)
{
    importData("tenbar.csv");
    const std::string whole = save("a.truss");
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(refuse(whole.substr(0, length)).empty()) << length;
}

TEST_F(DocumentFile, AFileWithAnyByteChangedIsRefusedOrHoldsAnotherSoundModel)
{
    import("node,a,0,0,0\nnode,b,3,4,0\nbar,ab,a,b,1,2,3\nsupport,a,1,1,1\nload,b,1,2,3\n");
    const std::string whole = save("a.truss");
    for (std::size_t place = 0; place < whole.size(); ++place)
    {
        for (const char byte : {'0', '9', 'f', ' ', '\n', '-', '\0', '\xff', 'x'})
        {
            std::string changed = whole;
            changed[place] = byte;
            writeBad(changed);
            try
            {
                const auto opened = truss::DocumentFile::open(file("bad.truss"));
                EXPECT_EQ(opened->size(), 5u) << place;
                opened->forEach<truss::Bar>([](const truss::Bar& bar) { EXPECT_NE(bar.getTo(), nullptr); });
            }
            catch (const Problem&)
            {
            }
        }
    }
}

TEST_F(DocumentFile, AFileThatGoesOnBehindItsLastObjectIsRefused)
{
    const std::string whole = save("a.truss");
    for (const char* const more : {"x", "7", "99999999999", "-", "+"})
        EXPECT_EQ(refuse(whole + more).toUtf8(), refusal("The file cannot be read to its end")) << more;
}

TEST_F(DocumentFile, AbsurdCountsAreRefused)
{
    importData("tenbar.csv");
    const std::string whole = save("a.truss");
    EXPECT_FALSE(refuse(replaced(whole, "\n2 10 AppVersion", "\n4294967295 10 AppVersion")).empty());
    EXPECT_FALSE(refuse(replaced(whole, "truss::Model 24 24", "truss::Model 24 4294967295")).empty());
    EXPECT_FALSE(refuse(replaced(whole, "truss::Model 24 24", "truss::Model 4294967295 24")).empty());
    EXPECT_FALSE(refuse(replaced(whole, " 2 n1 ", " 4294967295 n1 ")).empty());
    EXPECT_FALSE(refuse(replaced(whole, "\n2 2 n2", "\n4294967295 2 n2")).empty());
}

TEST_F(DocumentFile, DamagedObjectsAreRefusedWithTheReason)
{
    import("node,a,0,0,0\nnode,b,3,4,0\nbar,ab,a,b,1,2,3\nsupport,a,1,1,1\n");
    const std::string whole = save("a.truss"); // references: 2 3 4 5
    const auto reasonFor = [&](const std::string& from, const std::string& to)
    { return refuse(replaced(whole, from, to)).toUtf8(); };

    EXPECT_EQ(reasonFor("truss::Node", "truss::Mode"), refusal("A reference does not lead to a node"));
    EXPECT_EQ(reasonFor("truss::Support", "truss::Supp0rt"),
              refusal("The file holds objects that this program does not know"));
    EXPECT_EQ(reasonFor("truss::Bar", "truss::Bat"), refusal("The file holds objects that this program does not know"));
    EXPECT_EQ(reasonFor("truss::Model", "truss::Modem"), refusal("No root"));
    const std::string head = whole.substr(0, whole.find("0 12 truss::Model"));
    EXPECT_EQ(refuse(head + "0 11 truss::Node 1 a 0 0 0 \n").toUtf8(), refusal("The file does not hold a truss"));
    EXPECT_EQ(reasonFor("4 4 2 3 4 5 ", "3 3 2 3 4 "),
              refusal("The file holds objects that do not belong to its truss"));
    EXPECT_EQ(reasonFor("4 4 2 3 4 5 ", "4 4 1 3 4 5 "),
              refusal("The file holds objects that do not belong to its truss"));
    EXPECT_EQ(reasonFor("4 4 2 3 4 5 ", "4 4 2 3 4 6 "), refusal("Unknown ptr: 6"));
    EXPECT_EQ(reasonFor("1 b 3 4 0", "1 b 3 4 0 0"), refusal("A record is longer than expected"));
    EXPECT_EQ(reasonFor("1 b 3 4 0", "1 a 3 4 0"), refusal("The name 'a' is already used"));
    EXPECT_EQ(reasonFor("1 b 3 4 0", "0  3 4 0"), refusal("A name is empty or not UTF-8"));
    EXPECT_EQ(reasonFor("1 b 3 4 0", "1 b 0 0 0"), refusal("Bar 'ab' has zero length"));
    EXPECT_EQ(reasonFor("ab 2 3 1", "ab 2 4 1"), refusal("A reference does not lead to a node"));
    EXPECT_EQ(reasonFor("ab 2 3 1", "ab 2 0 1"), refusal("A reference does not lead to a node"));
    EXPECT_EQ(reasonFor("ab 2 3 1 2 3", "ab 2 3 -1 2 3"), refusal("The area of bar 'ab' is not positive"));
    EXPECT_EQ(reasonFor("ab 2 3 1 2 3", "ab 2 3 1 0 3"), refusal("The modulus of bar 'ab' is not positive"));
}

TEST_F(DocumentFile, ObjectsOfARefusedFileAreDestroyed)
{
    // Counts only what the sanitizers would see otherwise: after the refusal nobody observes the nodes any more.
    import("node,a,0,0,0\nnode,b,3,4,0\nbar,ab,a,b,1,2,3\n");
    const std::string whole = save("a.truss");
    EXPECT_FALSE(refuse(replaced(whole, "truss::Model 3 3 2 3 4", "truss::Model 3 3 2 3 3")).empty());
    EXPECT_FALSE(refuse(replaced(whole, "truss::Model 3 3 2 3 4", "truss::Model 3 3 2 1 4")).empty());
}

TEST_F(DocumentFile, AFileOfANewerVersionIsRefused)
{
    const std::string whole = save("a.truss");
    EXPECT_EQ(refuse(replaced(whole, "AppVersion 5 0 0", "AppVersion 5 0 1")).toUtf8(),
              refusal("File written by newer version.  Update to latest version using Help->Check for Updates"));
}

TEST_F(DocumentFile, AFileOfAnotherKindIsRefused)
{
    EXPECT_EQ(refuse("5 Hello \n0 \n").toUtf8(), refusal("Expecting: Morvane"));
    EXPECT_EQ(refuse("").toUtf8().substr(0, 19), "Failed to read file");
}

TEST_F(DocumentFile, AMissingFileIsNamed)
{
    const std::string path = directory / "missing.truss";
    EXPECT_PROBLEM(truss::DocumentFile::open(file("missing.truss")),
                   "Failed to read file: '" + path + "'\nFailed to open file: '" + path + "'");
}

TEST_F(DocumentFile, AnInterruptedOpeningIsNoFaultOfTheFile)
{
    importData("tenbar.csv");
    save("a.truss");
    status.setInterrupted();
    EXPECT_THROW(truss::DocumentFile::open(file("a.truss")), Interrupted);
}

TEST_F(DocumentFile, AnInterruptedSaveLeavesTheOldFile)
{
    const std::string old = save("a.truss");
    importData("tenbar.csv");
    status.setInterrupted();
    EXPECT_THROW(save("a.truss"), Interrupted);
    EXPECT_EQ(directory.read("a.truss"), old);
    EXPECT_FALSE(directory.has("a.truss.tmp"));
}
} // namespace
