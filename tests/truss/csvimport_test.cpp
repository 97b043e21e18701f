// SPDX-License-Identifier: MIT
#include <truss/exchange/csvimport.h>

#include <truss/support/trusstest.h>

namespace
{
class CsvImport : public TrussTest
{
};

TEST_F(CsvImport, AddsEachLineAsOneEntity)
{
    import("node,a,1,2.5,-3e2\n"
           "node,b,0,0,0\n"
           "bar,ab,a,b,1.5,2e11,7850\n"
           "support,b,1,0,1\n"
           "load,a,10,-20,30\n");
    EXPECT_EQ(node("a").getPosition(), (truss::Vector{1, 2.5, -300}));
    EXPECT_EQ(bar("ab").getFrom(), &node("a"));
    EXPECT_EQ(bar("ab").getTo(), &node("b"));
    EXPECT_EQ(bar("ab").getSection().area, 1.5);
    EXPECT_EQ(bar("ab").getSection().modulus, 2e11);
    EXPECT_EQ(bar("ab").getSection().density, 7850);
    EXPECT_EQ(toCsv(), "\"node\",\"a\",\"1\",\"2.5\",\"-300\",\n"
                       "\"node\",\"b\",\"0\",\"0\",\"0\",\n"
                       "\"bar\",\"ab\",\"a\",\"b\",\"1.5\",\"2e+11\",\"7850\",\n"
                       "\"support\",\"b\",\"1\",\"0\",\"1\",\n"
                       "\"load\",\"a\",\"10\",\"-20\",\"30\",\n");
}

TEST_F(CsvImport, ReadsBackWhatTheExportWrites)
{
    import("node,\"a, \"\"b\"\"\",0.1,1e-300,12345678.9\nnode,Brücke,3,0,0\n");
    import("bar,x,\"a, \"\"b\"\"\",Brücke,0.30000000000000004,1\nload,Brücke,1,2,3\nload,Brücke,1,2,3\n");
    const std::string exported = toCsv();
    document.replace(truss::BulletinPtr<truss::Model>(new truss::Model));
    import(exported);
    EXPECT_EQ(toCsv(), exported);
}

TEST_F(CsvImport, SkipsCommentsAndEmptyLinesAndTakesAnyLineEnd)
{
    import("# a comment, with commas\n\n   \t\r\nnode,a,0,0,0\r\n#\nnode,b,1,0,0");
    EXPECT_EQ(model().size(), 2u);
}

TEST_F(CsvImport, TakesTheDensityForZeroWhenItIsLeftOut)
{
    import("node,a,0,0,0\nnode,b,1,0,0\nbar,ab,a,b,1,1\n");
    EXPECT_EQ(bar("ab").getSection().density, 0);
}

TEST_F(CsvImport, FindsNodesThatWereThereBefore)
{
    import("node,a,0,0,0\n");
    import("node,b,1,0,0\nbar,ab,a,b,1,1\n");
    EXPECT_EQ(bar("ab").getFrom(), &node("a"));
}

TEST_F(CsvImport, IsOneCommandThatUndoTakesBack)
{
    import("node,a,0,0,0\nnode,b,1,0,0\nbar,ab,a,b,1,1\n");
    const auto before = entries();
    document.undo();
    EXPECT_TRUE(model().empty());
    document.redo();
    EXPECT_EQ(entries(), before);
}

TEST_F(CsvImport, LeavesNothingBehindWhenItIsInterruptedWhileItAdds)
{
    import("node,x,0,0,0\n");
    const std::string before = toCsv();
    status.elapse();
    status.interruptAt(1);
    EXPECT_THROW(import("node,a,0,0,0\nnode,b,1,0,0\nnode,c,2,0,0\n"), Interrupted);
    EXPECT_EQ(toCsv(), before);
    status.resetInterrupts();
    document.undo();
    EXPECT_PROBLEM(document.undo(), "There is nothing to undo");
}

TEST_F(CsvImport, RefusesABarBetweenTwoNodesAtOnePlace)
{
    const std::string path = directory.write("bad.csv", "node,a,1,1,1\nnode,b,1,1,1\nbar,ab,a,b,1,1\n");
    truss::CsvImport reading(model(), Kel::File(path));
    EXPECT_PROBLEM(reading.readLines(1000), path + ", line 3\nBar 'ab' has zero length");
}

TEST_F(CsvImport, SaysWhichFileCannotBeOpened)
{
    const std::string path = directory / "missing.csv";
    EXPECT_PROBLEM(truss::CsvImport(model(), Kel::File(path)), "Failed to open file: '" + path + "'");
}

TEST_F(CsvImport, RefusesADirectory)
{
    const std::string path = directory.getPath().string();
    truss::CsvImport reading(model(), Kel::File(path));
    EXPECT_PROBLEM(reading.readLines(1), "Failed to read file: '" + path + "'");
}

struct BadLine
{
    const char* name;
    std::string line;
    const char* message;
};

class BadCsvLine : public TrussTest, public testing::WithParamInterface<BadLine>
{
};

TEST_P(BadCsvLine, IsNamedWithFileAndLineAndLeavesNothing)
{
    import("node,old,9,9,9\n");
    const std::string before = toCsv();
    const std::string good = "# nodes\nnode,a,0,0,0\nnode,b,1,0,0\nbar,ab,a,b,1,1\nsupport,a,1,1,1\n";
    const std::string path = directory.write("bad.csv", good + GetParam().line + "\nnode,c,2,0,0\n");
    truss::CsvImport reading(model(), Kel::File(path));
    EXPECT_PROBLEM(reading.readLines(1000), path + ", line 6\n" + GetParam().message);
    EXPECT_EQ(toCsv(), before);
}

INSTANTIATE_TEST_SUITE_P(
    All, BadCsvLine,
    testing::Values(
        BadLine{"UnknownKind", "beam,x,a,b,1,1", "Unknown kind 'beam'"},
        BadLine{"KindInCapitals", "Node,x,0,0,0", "Unknown kind 'Node'"},
        BadLine{"NoKind", ",x,0,0,0", "Unknown kind ''"},
        BadLine{"TooFewFieldsOfANode", "node,x,0,0", "Wrong number of fields, expecting: node,NAME,x,y,z"},
        BadLine{"TooManyFieldsOfANode", "node,x,0,0,0,0", "Wrong number of fields, expecting: node,NAME,x,y,z"},
        BadLine{"TooFewFieldsOfABar", "bar,x,a,b,1",
                "Wrong number of fields, expecting: bar,NAME,NODE,NODE,area,modulus[,density]"},
        BadLine{"TooManyFieldsOfABar", "bar,x,a,b,1,1,1,1",
                "Wrong number of fields, expecting: bar,NAME,NODE,NODE,area,modulus[,density]"},
        BadLine{"TooFewFieldsOfASupport", "support,b,1", "Wrong number of fields, expecting: support,NODE,h,h,h"},
        BadLine{"TooManyFieldsOfALoad", "load,b,1,1,1,1", "Wrong number of fields, expecting: load,NODE,Fx,Fy,Fz"},
        BadLine{"NotANumber", "node,x,0,zero,0", "'zero' is not a number"},
        BadLine{"EmptyNumber", "node,x,0,,0", "'' is not a number"},
        BadLine{"NumberWithASpace", "node,x,0,1 0,0", "A field with a space in it has to stand between quotes"},
        BadLine{"NameWithASpace", "node,x y,0,0,0", "A field with a space in it has to stand between quotes"},
        BadLine{"NumberWithATab", "node,x,0,1\t0,0", "'1\t0' is not a number"},
        BadLine{"NumberWithATail", "node,x,0,1m,0", "'1m' is not a number"},
        BadLine{"NumberWithADecimalComma", "node,x,0,\"1,5\",0", "'1,5' is not a number"},
        BadLine{"NumberWithTwoSigns", "node,x,0,+-1,0", "'+-1' is not a number"},
        BadLine{"InfiniteNumber", "load,a,inf,0,0", "'inf' is not finite"},
        BadLine{"NoNumberByDefinition", "load,a,nan,0,0", "'nan' is not finite"},
        BadLine{"NumberOutOfRange", "node,x,1e999,0,0", "'1e999' is out of the range of finite numbers"},
        BadLine{"UnknownNodeOfABar", "bar,x,a,z,1,1", "There is no node named 'z'"},
        BadLine{"BarInPlaceOfANode", "load,ab,1,0,0", "There is no node named 'ab'"},
        BadLine{"UnknownNodeOfASupport", "support,z,1,1,1", "There is no node named 'z'"},
        BadLine{"UnknownNodeOfALoad", "load,z,1,1,1", "There is no node named 'z'"},
        BadLine{"NodeOfALaterLine", "load,c,1,1,1", "There is no node named 'c'"},
        BadLine{"DuplicateNode", "node,a,5,5,5", "The name 'a' is already used"},
        BadLine{"DuplicateOfTheModel", "node,old,5,5,5", "The name 'old' is already used"},
        BadLine{"DuplicateBar", "bar,ab,b,a,1,1", "The name 'ab' is already used"},
        BadLine{"BarNamedLikeANode", "bar,a,a,b,1,1", "The name 'a' is already used"},
        BadLine{"EmptyName", "node,,0,0,0", "A name is empty or not UTF-8"},
        BadLine{"NameNotUtf8", "node,\xff\xfe,0,0,0", "A name is empty or not UTF-8"},
        BadLine{"NameWithAZero", std::string("node,x\0y,0,0,0", 14), "A name is empty or not UTF-8"},
        BadLine{"NameWithAControlCharacter", "node,x\x1by,0,0,0", "A name holds a control character"},
        BadLine{"BarFromANodeToItself", "bar,x,a,a,1,1", "Bar 'x' has zero length"},
        BadLine{"ZeroArea", "bar,x,a,b,0,1", "The area of bar 'x' is not positive"},
        BadLine{"NegativeArea", "bar,x,a,b,-1,1", "The area of bar 'x' is not positive"},
        BadLine{"ZeroModulus", "bar,x,a,b,1,0", "The modulus of bar 'x' is not positive"},
        BadLine{"NegativeModulus", "bar,x,a,b,1,-1", "The modulus of bar 'x' is not positive"},
        BadLine{"NegativeDensity", "bar,x,a,b,1,1,-1", "The density of bar 'x' is negative"},
        BadLine{"SupportNeitherHeldNorFree", "support,b,2,0,0", "'2' is neither 1 (held) nor 0 (free)"},
        BadLine{"SecondSupport", "support,a,1,0,0", "Node 'a' has a support already"}),
    [](const auto& row) { return row.param.name; });
} // namespace
