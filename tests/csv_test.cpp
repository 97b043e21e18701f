// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/csv.h>

#include <kel/file_kel.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace
{
class CsvFields : public testing::Test
{
protected:
    std::string write(const std::string& field)
    {
        std::ostringstream out;
        m_csv.writeElement(out, field);
        return out.str();
    }

    std::string read(std::istream& in)
    {
        std::string field;
        m_csv.readElement(in, field);
        return field;
    }

    std::string read(const std::string& bytes)
    {
        std::istringstream in(bytes);
        return read(in);
    }

    const Csv m_csv{Kel::File("table.csv")};
};
} // namespace

TEST_F(CsvFields, AreWrittenBetweenQuotesWithAComma)
{
    EXPECT_EQ(write("abc"), "\"abc\",");
    EXPECT_EQ(write(""), "\"\",");
    EXPECT_EQ(write("a, b\n"), "\"a, b\n\",");
}

TEST_F(CsvFields, QuotesInsideAreDoubled)
{
    EXPECT_EQ(write("ab\"c"), "\"ab\"\"c\",");
    EXPECT_EQ(write("\""), "\"\"\"\",");
}

TEST_F(CsvFields, FollowOneAnotherInALine)
{
    std::ostringstream out;
    m_csv.writeElement(out, "a");
    m_csv.writeElement(out, "b");
    out << "\n";
    EXPECT_EQ(out.str(), "\"a\",\"b\",\n");
}

TEST_F(CsvFields, EndAtACommaOrALineFeed)
{
    std::istringstream in("a,b\nc");
    EXPECT_EQ(read(in), "a");
    EXPECT_EQ(read(in), "b");
    EXPECT_TRUE(in.good());
    EXPECT_EQ(read(in), "c");
    EXPECT_TRUE(in.eof());
    EXPECT_TRUE(in.fail());
}

TEST_F(CsvFields, ReadingFromAFailedStreamGivesNothing)
{
    std::istringstream in("a");
    in.setstate(std::ios::failbit);
    EXPECT_EQ(read(in), "");
}

TEST_F(CsvFields, SpacesOutsideQuotesAreDropped)
{
    EXPECT_EQ(read("x y,"), "xy");
    EXPECT_EQ(read("  x  \" y \" z ,"), "x y z");
}

TEST_F(CsvFields, OtherWhitespaceOutsideQuotesIsKept)
{
    EXPECT_EQ(read("x\r\n"), "x\r");
    EXPECT_EQ(read("\tx\t,"), "\tx\t");
}

TEST_F(CsvFields, CommasAndLineFeedsInsideQuotesAreKept)
{
    std::istringstream in("\"a,b\nc\",d");
    EXPECT_EQ(read(in), "a,b\nc");
    EXPECT_EQ(read(in), "d");
}

TEST_F(CsvFields, DoubledQuotesStandForOne)
{
    EXPECT_EQ(read("\"a\"\"b\""), "a\"b");
    EXPECT_EQ(read("\"\"\"\","), "\"");
    EXPECT_EQ(read("\"\"\"\"\"\","), "\"\"");
    EXPECT_EQ(read("\"\","), "");
}

TEST_F(CsvFields, ASecondQuotedPieceBeginsWithAQuote)
{
    EXPECT_EQ(read("\"a\"b\"c\","), "ab\"c");
}

TEST_F(CsvFields, AnOpenQuoteReadsToTheEnd)
{
    EXPECT_EQ(read("\"a,b\n"), "a,b\n");
}

TEST_F(CsvFields, AreAppended)
{
    std::istringstream in("b,c,");
    std::string field = "a";
    m_csv.readElement(in, field);
    m_csv.readElement(in, field);
    EXPECT_EQ(field, "abc");
}

TEST_F(CsvFields, ReadBackAsWritten)
{
    const std::vector<std::string> fields = {
        "", "plain", " a b ", "a,b", "\"", "\"\"", "a\"b", "\"ab\"", "a\r\nb", "\xC3\xA9\xFF", std::string("a\0b", 3)};
    std::stringstream file;
    for (const std::string& field : fields)
        m_csv.writeElement(file, field);
    for (const std::string& field : fields)
        EXPECT_EQ(read(file), field);
}
