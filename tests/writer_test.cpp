// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/writer.h>

#include <kel/interrupted.h>
#include <kel/problem.h>

#include "support/persistable.h"
#include "support/problem.h"
#include "support/streambuffers.h"
#include "support/streams.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iomanip>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
/// What formatted output makes of a value on a stream with the same settings.
template <class T>
std::string format(const std::ostream& like, const T& value)
{
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out.copyfmt(like);
    out << value << ' ';
    return out.str();
}

/// A scripted object that writes itself with the function.
class Writing : public Scripted
{
public:
    explicit Writing(std::function<void(Writer&)> write) { onWrite = std::move(write); }
};
} // namespace

class WriterTest : public testing::Test
{
protected:
    /// What was written since the last call.
    std::string take()
    {
        const std::string written = m_out.str();
        m_out.str("");
        return written;
    }

    /// What a number looks like.
    template <class T>
    std::string toText(T number)
    {
        take();
        m_writer.write(number);
        return take();
    }

    std::ostringstream m_out;
    Writer m_writer{m_out, "Test", false};
};

// The beginning of a stream

TEST_F(WriterTest, BeginsWithTheHeaderAndTheVersionTable)
{
    EXPECT_EQ(take(), getPreamble());
}

TEST(Writer, CountsTheHeaderInBytesOfUtf8)
{
    std::ostringstream out;
    Ztring header;
    header.fromUtf8("\xc3\xa9 1.0");
    const Writer writer(out, header, false);
    EXPECT_EQ(out.str(), getPreamble("\xc3\xa9 1.0"));
}

TEST(Writer, WritesAnEmptyHeaderAsLengthZero)
{
    std::ostringstream out;
    const Writer writer(out, "", false);
    EXPECT_EQ(out.str().substr(0, 4), "0  \n");
}

TEST(Writer, TellsTheStatusThatItWrites)
{
    TestStatus status;
    std::ostringstream out;
    const Writer writer(out, "Test", true);
    EXPECT_EQ(status.texts, std::vector<std::string>{"Writing objects"});
}

TEST(Writer, NeedsNoStatusUnlessItReportsProgress)
{
    std::ostringstream out;
    EXPECT_ASSERTION(Writer(out, "Test", true), "valid(s_singleton)");
    Node node;
    EXPECT_NO_THROW(Writer(out, "Test", false).writeObj(&node));
}

TEST(Writer, DiesWithoutAWordToTheStream)
{
    std::ostringstream out;
    {
        const Writer writer(out, "Test", false);
        out.str("");
    }
    EXPECT_EQ(out.str(), "");
    EXPECT_TRUE(out.good());
}

TEST_F(WriterTest, HandsOutItsStream)
{
    take();
    m_writer.getOut() << 12 << Writer::s_separator;
    EXPECT_EQ(take(), "12 ");
}

TEST_F(WriterTest, IsABoardForWhatBelongsToTheStream)
{
    m_writer.add(new Bulletin("Note"));
    EXPECT_TRUE(m_writer.hasKey("Note"));
}

// Numbers

TEST_F(WriterTest, WritesEveryIntegerTypeInDecimal)
{
    EXPECT_EQ(toText<short>(-32768), "-32768 ");
    EXPECT_EQ(toText<unsigned short>(65535), "65535 ");
    EXPECT_EQ(toText(0), "0 ");
    EXPECT_EQ(toText(std::numeric_limits<int>::min()), "-2147483648 ");
    EXPECT_EQ(toText(std::numeric_limits<unsigned>::max()), "4294967295 ");
    EXPECT_EQ(toText(std::numeric_limits<long>::min()), "-9223372036854775808 ");
    EXPECT_EQ(toText(std::numeric_limits<unsigned long>::max()), "18446744073709551615 ");
    EXPECT_EQ(toText(std::numeric_limits<long long>::max()), "9223372036854775807 ");
    EXPECT_EQ(toText(std::numeric_limits<unsigned long long>::max()), "18446744073709551615 ");
}

TEST_F(WriterTest, WritesBoolAndCharactersAsNumbers)
{
    EXPECT_EQ(toText(true), "1 ");
    EXPECT_EQ(toText(false), "0 ");
    EXPECT_EQ(toText('A'), "65 ");
    EXPECT_EQ(toText<signed char>(-1), "-1 ");
    EXPECT_EQ(toText<unsigned char>(255), "255 ");
    EXPECT_EQ(toText(L'\u20ac'), "8364 ");
    EXPECT_EQ(toText(char8_t(0x7f)), "127 ");
    EXPECT_EQ(toText(u'\uffff'), "65535 ");
    EXPECT_EQ(toText(U'\U0010ffff'), "1114111 ");
}

TEST_F(WriterTest, WritesRealNumbersInTheDefaultFormattingOfStreams)
{
    EXPECT_EQ(toText(0.1), "0.1 ");
    EXPECT_EQ(toText(0.1F), "0.1 ");
    EXPECT_EQ(toText(1e6), "1e+06 ");
    EXPECT_EQ(toText(123456.0), "123456 ");
    EXPECT_EQ(toText(1234567.0), "1.23457e+06 ");
    EXPECT_EQ(toText(999999.5), "1e+06 ");
    EXPECT_EQ(toText(0.0001), "0.0001 ");
    EXPECT_EQ(toText(0.00001), "1e-05 ");
    EXPECT_EQ(toText(-0.0), "-0 ");
    EXPECT_EQ(toText(2.5L), "2.5 ");
    EXPECT_EQ(toText(std::numeric_limits<double>::infinity()), "inf ");
    EXPECT_EQ(toText(-std::numeric_limits<double>::infinity()), "-inf ");
    EXPECT_EQ(toText(std::numeric_limits<double>::quiet_NaN()), "nan ");
    EXPECT_EQ(toText(std::numeric_limits<double>::denorm_min()), "4.94066e-324 ");
    EXPECT_EQ(toText(std::numeric_limits<double>::max()), "1.79769e+308 ");
}

TEST_F(WriterTest, WritesRealNumbersAtThePrecisionOfTheStream)
{
    m_out.precision(17);
    EXPECT_EQ(toText(0.1), "0.10000000000000001 ");
    m_out.precision(0);
    EXPECT_EQ(toText(0.25), "0.2 ");
    m_out.precision(40);
    EXPECT_EQ(toText(0.1), "0.1000000000000000055511151231257827021182 ");
    m_out.precision(-1);
    EXPECT_EQ(toText(0.1), format(m_out, 0.1));
}

TEST_F(WriterTest, WritesTheBytesOfFormattedOutputForAllBitPatterns)
{
    std::mt19937_64 random(20);
    for (int i = 0; i < 40000; ++i)
    {
        const auto number = std::bit_cast<double>(random());
        m_out.precision(static_cast<std::streamsize>(random() % 21));
        ASSERT_EQ(toText(number), format(m_out, number)) << std::hexfloat << number << " at " << m_out.precision();
    }
}

TEST_F(WriterTest, WritesTheBytesOfFormattedOutputForNumbersOfCommonSize)
{
    std::mt19937_64 random(21);
    std::uniform_real_distribution<double> exponents(-8, 18);
    for (int i = 0; i < 40000; ++i)
    {
        const double number = std::pow(10, exponents(random)) * (i % 2 == 0 ? 1 : -1);
        const double tie = static_cast<double>(random() % 20000001) / static_cast<double>(1u << (random() % 12));
        m_out.precision(static_cast<std::streamsize>(random() % 18));
        ASSERT_EQ(toText(number), format(m_out, number)) << std::hexfloat << number << " at " << m_out.precision();
        ASSERT_EQ(toText(tie), format(m_out, tie)) << std::hexfloat << tie << " at " << m_out.precision();
        ASSERT_EQ(toText(static_cast<float>(number)), format(m_out, static_cast<float>(number)));
    }
}

TEST_F(WriterTest, WritesTheBytesOfFormattedOutputNextToPowersOfTen)
{
    for (int exponent = -30; exponent <= 30; ++exponent)
    {
        const double power = std::pow(10, exponent);
        for (const double number : {std::nextafter(power, 0), power, std::nextafter(power, 1e300), power * 0.9999995,
                                    power * 0.99999949999, power * 1.0000005, power * 5})
        {
            ASSERT_EQ(toText(number), format(m_out, number)) << std::hexfloat << number;
        }
    }
}

TEST_F(WriterTest, WritesTheBytesOfFormattedOutputAtEveryPrecisionNextToPowersOfTen)
{
    for (int precision = 0; precision <= 17; ++precision)
    {
        m_out.precision(precision);
        for (int exponent = -14; exponent <= 19; ++exponent)
        {
            const double power = std::stod("1e" + std::to_string(exponent));
            for (const double number : {std::nextafter(power, 0), power, -power, std::nextafter(power, 1e300)})
            {
                ASSERT_EQ(toText(number), format(m_out, number)) << std::hexfloat << number << " at " << precision;
            }
        }
    }
}

TEST(Writer, WritesTheSameBytesWhereverTheBufferIsFull)
{
    Ztring text;
    text.fromUtf8("a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80");
    const auto writeAll = [&text](std::ostream& out)
    {
        Writer writer(out, "Test", false);
        Node node;
        for (int i = 0; i < 40; ++i)
            writer.write(1e10 / (i + 1)).write(i).write(text).write(3, "abc").writeHex(static_cast<unsigned>(i));
        writer.writeObj(&node);
    };
    std::ostringstream whole;
    writeAll(whole);
    for (std::size_t size = 1; size < 200; ++size)
    {
        SmallBuffer buffer(size);
        std::ostream out(&buffer);
        writeAll(out);
        ASSERT_EQ(buffer.getBytes(), whole.str()) << size;
    }
}

TEST_F(WriterTest, FollowsTheSettingsOfTheStream)
{
    using Change = void (*)(std::ostream&);
    const std::vector<std::pair<const char*, Change>> settings = {
        {"hex", [](std::ostream& out) { out << std::hex; }},
        {"oct with base", [](std::ostream& out) { out << std::oct << std::showbase; }},
        {"plus sign", [](std::ostream& out) { out << std::showpos; }},
        {"fixed", [](std::ostream& out) { out << std::fixed; }},
        {"scientific in upper case", [](std::ostream& out) { out << std::scientific << std::uppercase; }},
        {"decimal point", [](std::ostream& out) { out << std::showpoint; }},
        {"every write flushed", [](std::ostream& out) { out << std::unitbuf; }},
    };
    for (const auto& [name, change] : settings)
    {
        std::ostringstream out;
        Writer writer(out, "Test", false);
        out.str("");
        change(out);
        writer.write(255).write(-2).write(1.5);
        EXPECT_EQ(out.str(), format(out, 255) + format(out, -2) + format(out, 1.5)) << name;
    }
}

TEST_F(WriterTest, PadsOneNumberToTheWidthOfTheStream)
{
    take();
    m_out << std::setw(5) << std::setfill('*');
    m_writer.write(12).write(12);
    EXPECT_EQ(take(), "***12 12 ");
}

TEST(Writer, WritesNumbersInTheClassicLocale)
{
    const ForeignLocale foreign;
    std::ostringstream out;
    Writer writer(out, "Test", false);
    out.str("");
    writer.write(1234567).write(1.5).writeHex(0xabcde);
    out << 7654321 << ' ';
    EXPECT_EQ(out.str(), "1234567 1.5 abcde 7654321 ");
}

TEST_F(WriterTest, WritesHexadecimalInLowerCaseAndLeavesTheStreamInDecimal)
{
    take();
    m_writer.writeHex(0).writeHex(10).writeHex(4294967295u).write(10);
    m_out << 10;
    EXPECT_EQ(take(), "0 a ffffffff 10 10");
}

TEST_F(WriterTest, LeavesAStreamOfAnotherBaseInDecimalAfterHexadecimal)
{
    m_out << std::oct;
    take();
    m_writer.writeHex(30);
    m_out << 30;
    EXPECT_EQ(take(), "1e 30");
}

TEST(Writer, LeavesAStreamThatThrowsInDecimalAfterHexadecimal)
{
    FullBuffer buffer(1000);
    std::ostream out(&buffer);
    Writer writer(out, "Test", false);
    buffer.setRoom(0);
    out.exceptions(std::ios_base::badbit);
    EXPECT_THROW(writer.writeHex(30), std::ios_base::failure);
    EXPECT_EQ(out.flags() & std::ios_base::basefield, std::ios_base::dec);
}

// Failing streams

namespace
{
/// A stream on a buffer that has room for so many bytes after the beginning that every writer writes.
struct NarrowStream
{
    NarrowStream(std::size_t room, bool isThrowing) : buffer(1000, isThrowing), out(&buffer), writer(out, "Test", false)
    {
        buffer.bytes.clear();
        buffer.setRoom(room);
    }

    FullBuffer buffer;
    std::ostream out;
    Writer writer;
};

void expectTheOutcomeOfFormattedOutput(std::size_t room, bool isThrowing)
{
    NarrowStream actual(room, isThrowing);
    NarrowStream expected(room, isThrowing);
    const auto expectSame = [&]
    {
        EXPECT_EQ(actual.buffer.bytes, expected.buffer.bytes) << room;
        EXPECT_EQ(actual.out.rdstate(), expected.out.rdstate()) << room;
    };
    actual.writer.write(123456);
    expected.out << 123456 << ' ';
    expectSame();
    actual.writer.write(0.25);
    expected.out << 0.25 << ' ';
    expectSame();
    actual.writer.writeHex(255);
    expected.out << std::hex << 255 << std::dec << ' ';
    expectSame();
    actual.writer.write(3, "abc");
    (expected.out << 3 << ' ').write("abc", 3) << ' ';
    expectSame();
}
} // namespace

TEST(Writer, LeavesTheStateOfFormattedOutputWhereverTheBufferIsFull)
{
    for (std::size_t room = 0; room <= 22; ++room)
        expectTheOutcomeOfFormattedOutput(room, false);
}

TEST(Writer, LeavesTheStateOfFormattedOutputWhereverTheBufferThrows)
{
    for (std::size_t room = 0; room <= 22; ++room)
        expectTheOutcomeOfFormattedOutput(room, true);
}

TEST(Writer, LetsAnExceptionOfTheBufferOutOfAStreamThatThrows)
{
    for (std::size_t room = 0; room < 3; ++room)
    {
        NarrowStream stream(room, true);
        stream.out.exceptions(std::ios::badbit);
        EXPECT_THROW(stream.writer.write(12), BufferError);
        EXPECT_EQ(stream.out.rdstate(), std::ios::badbit);
        EXPECT_EQ(stream.buffer.bytes, std::string("12 ").substr(0, room));
    }
}

TEST(Writer, ThrowsTheFailureOfAStreamThatThrows)
{
    for (std::size_t room = 0; room < 3; ++room)
    {
        NarrowStream stream(room, false);
        stream.out.exceptions(std::ios::badbit);
        EXPECT_THROW(stream.writer.write(12), std::ios_base::failure);
    }
}

TEST_F(WriterTest, WritesNothingToAFailedStreamAndDoesNotMind)
{
    take();
    m_out.setstate(std::ios::failbit);
    Node node;
    m_writer.write(1).write<Ztring>("text").write(1, "b").writeHex(1);
    EXPECT_NO_THROW(m_writer.writeObj(&node));
    EXPECT_EQ(take(), "");
}

TEST_F(WriterTest, FlushesTheStreamThatIsTied)
{
    FullBuffer buffer(0);
    std::ostream tied(&buffer);
    m_out.tie(&tied);
    take();
    m_writer.write(1).write(2, "ab");
    EXPECT_EQ(take(), "1 2 ab ");
}

// Texts and blocks

TEST_F(WriterTest, WritesTextAsCountedUtf8)
{
    take();
    Ztring text;
    text.fromUtf8("a \xe2\x82\xac\nb");
    m_writer.write<Ztring>("abc").write(Ztring()).write(text);
    EXPECT_EQ(take(), "3 abc 0  7 a \xe2\x82\xac\nb ");
}

TEST_F(WriterTest, WritesTextOfAllLengthsOfUtf8)
{
    take();
    for (const char* const utf8 : {"\x7f", "\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xed\x9f\xbf", "\xee\x80\x80",
                                   "\xef\xbf\xbf", "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"})
    {
        Ztring text;
        text.fromUtf8(utf8);
        ASSERT_EQ(text.length(), 1u);
        m_writer.write(text);
        EXPECT_EQ(take(), std::to_string(std::string(utf8).size()) + " " + utf8 + " ");
    }
}

TEST_F(WriterTest, LeavesCodesThatAreNoCharactersToTheConversionOfTexts)
{
    take();
    for (const wchar_t character : {wchar_t(0xD800), wchar_t(0xDFFF), wchar_t(0x110000), wchar_t(-1)})
    {
        const Ztring text(wxString(std::wstring(1, character)));
        m_writer.write(text);
        EXPECT_EQ(take(), std::to_string(text.toUtf8().size()) + " " + text.toUtf8() + " ");
    }
}

TEST_F(WriterTest, WritesZeroCharacters)
{
    take();
    m_writer.write(Ztring(std::string("a\0b", 3)));
    EXPECT_EQ(take(), std::string("3 a\0b ", 6));
}

TEST_F(WriterTest, WritesBlocksUnchanged)
{
    take();
    const char bytes[] = {'\0', '\n', '\xff', ' '};
    m_writer.write(4, bytes).write(0, nullptr);
    EXPECT_EQ(take(), std::string("4 ") + std::string(bytes, 4) + " 0  ");
}

// Objects

TEST_F(WriterTest, NullAtTopLevelWritesNothing)
{
    take();
    m_writer.writeObj(nullptr);
    EXPECT_EQ(take(), "");
}

TEST_F(WriterTest, RootIsWrittenWithoutAReference)
{
    take();
    Writing root([](Writer& writer) { writer.write(7); });
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "0 8 Scripted 7 \n");
}

TEST_F(WriterTest, ReferencesAreIdsInHexadecimalAndRecordsFollowInOrder)
{
    take();
    std::vector<std::unique_ptr<Writing>> leaves;
    for (int i = 0; i < 16; ++i)
        leaves.push_back(std::make_unique<Writing>([i](Writer& writer) { writer.write(i); }));
    Writing root(
        [&leaves](Writer& writer)
        {
            for (const auto& leaf : leaves)
                writer.writeObj(leaf.get());
        });
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "0 8 Scripted 2 3 4 5 6 7 8 9 a b c d e f 10 11 \n"
                      "1 0 \n1 1 \n1 2 \n1 3 \n1 4 \n1 5 \n1 6 \n1 7 \n"
                      "1 8 \n1 9 \n1 10 \n1 11 \n1 12 \n1 13 \n1 14 \n1 15 \n");
}

TEST_F(WriterTest, ReferenceLeavesTheStreamInDecimal)
{
    take();
    Writing leaf([](Writer& writer) { writer.getOut() << 20 << ' '; });
    Writing root(
        [&leaf](Writer& writer)
        {
            writer.writeObj(&leaf);
            writer.getOut() << 20 << ' ';
        });
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "0 8 Scripted 2 20 \n1 20 \n");
}

TEST_F(WriterTest, NullReferenceIsZero)
{
    take();
    Writing root([](Writer& writer) { writer.writeObj(nullptr); });
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "0 8 Scripted 0 \n");
}

TEST_F(WriterTest, ObjectReferredToTwiceIsWrittenOnce)
{
    take();
    Writing leaf([](Writer& writer) { writer.write(5); });
    Writing root(
        [&leaf](Writer& writer)
        {
            writer.writeObj(&leaf);
            writer.writeObj(&leaf);
        });
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "0 8 Scripted 2 2 \n1 5 \n");
}

TEST_F(WriterTest, CycleEndsWithTheIdOfTheRoot)
{
    take();
    Writing* next = nullptr;
    Writing first([&next](Writer& writer) { writer.writeObj(next); });
    Writing second([&first](Writer& writer) { writer.writeObj(&first); });
    next = &second;
    m_writer.writeObj(&first);
    EXPECT_EQ(take(), "0 8 Scripted 2 \n1 1 \n");
}

TEST_F(WriterTest, ObjectWrittenBeforeIsNotWrittenAgainAtTopLevel)
{
    Writing root([](Writer&) {});
    m_writer.writeObj(&root);
    take();
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "");
}

TEST_F(WriterTest, SecondTopLevelObjectGoesOnWithTheNumbers)
{
    Writing first([](Writer&) {});
    Writing second([&first](Writer& writer) { writer.writeObj(&first); });
    m_writer.writeObj(&first);
    take();
    m_writer.writeObj(&second);
    EXPECT_EQ(take(), "1 1 \n");
}

TEST_F(WriterTest, ClassesAreNumberedInDecimalInTheOrderInWhichTheyAreMet)
{
    std::vector<std::unique_ptr<SerializableCreator>> creators;
    struct Named : Serializable
    {
        SerializableCreator* getCreator() override { return creator; }
        SerializableCreator* creator = nullptr;
    };
    std::vector<Named> objects(24);
    for (std::size_t i = 0; i < objects.size(); ++i)
    {
        if (i % 2 == 0)
            creators.push_back(std::make_unique<CreatorOf<Node>>("Class" + std::to_string(i / 2 + 1)));
        objects[i].creator = creators.back().get();
    }
    Writing root(
        [&objects](Writer& writer)
        {
            for (Named& object : objects)
                writer.writeObj(&object);
        });
    take();
    m_writer.writeObj(&root);
    const std::string written = take();
    EXPECT_EQ(written.substr(written.find('\n') + 1, 45), "0 6 Class1 \n2 \n0 6 Class2 \n3 \n0 6 Class3 \n4 \n");
    EXPECT_EQ(written.substr(written.size() - 17), "0 7 Class12 \n13 \n");
}

TEST_F(WriterTest, WriteCreatorNamesAClassOnce)
{
    take();
    Node node;
    m_writer.writeCreator(&node);
    m_writer.writeCreator(&node);
    EXPECT_EQ(take(), "0 4 Node 1 ");
}

TEST_F(WriterTest, ObjectsAnywhereInMemoryHaveTheirNumbers)
{
    // Objects at the same distance from each other as pages, blocks and whatever an allocator may like.
    for (const std::size_t distance : {std::size_t(512), std::size_t(4096), std::size_t(1) << 20})
    {
        static_assert(sizeof(Node) <= 512);
        constexpr std::size_t count = 150;
        const auto memory = std::make_unique_for_overwrite<char[]>(count * distance + sizeof(Node));
        std::vector<Node*> nodes;
        for (std::size_t i = 0; i < count; ++i)
            nodes.push_back(new (memory.get() + i * distance) Node());
        std::ostringstream out;
        Writer writer(out, "Test", false);
        for (int times = 0; times < 2; ++times)
        {
            for (std::size_t i = 0; i < count; ++i)
                ASSERT_EQ(writer.getId(static_cast<Serializable*>(nodes[i])), i + 1);
        }
        for (Node* node : nodes)
            node->~Node();
    }
}

TEST_F(WriterTest, MembersOfManyClassesAreWrittenWhenTheyAreSerializable)
{
    take();
    Document document;
    BulletinBoard board;
    NodeList list;
    Scripted scripted;
    Node node;
    Bulletin plain;
    OrderedBulletins members{BulletinKey()};
    for (int i = 0; i < 3; ++i)
    {
        for (Bulletin* member : std::initializer_list<Bulletin*>{&document, &board, &list, &scripted, &node, &plain})
            members.append(member);
    }
    Writing root([&members](Writer& writer) { writer.writeBulletins(members); });
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "0 8 Scripted 12 2 3 4 5 2 3 4 5 2 3 4 5 \n"
                      "0 8 Document 0 \n0 8 NodeList 0 \n1 \n0 4 Node 0  0 0 0 0 0  0 0 \n");
}

TEST_F(WriterTest, ObjectWithoutACreatorFails)
{
    class Nameless : public Serializable
    {
    } object;
    EXPECT_ASSERTION(m_writer.writeObj(&object), "false");
}

TEST_F(WriterTest, GetIdNumbersWithoutWriting)
{
    take();
    Writing first([](Writer&) {});
    Writing second([](Writer&) {});
    EXPECT_EQ(m_writer.getId(nullptr), 0u);
    EXPECT_EQ(m_writer.getId(static_cast<Serializable*>(&first)), 1u);
    EXPECT_EQ(m_writer.getId(static_cast<Serializable*>(&second)), 2u);
    EXPECT_EQ(m_writer.getId(static_cast<Serializable*>(&first)), 1u);
    EXPECT_EQ(take(), "");
}

TEST_F(WriterTest, GetIdNumbersAddressesAsTheyAreMetWhereverTheyAre)
{
    std::mt19937_64 random(7);
    std::map<std::uint64_t, unsigned> expected;
    std::uint64_t address = std::uint64_t(1) << 40;
    const auto check = [&](std::uint64_t next)
    {
        const unsigned id = expected.try_emplace(next, static_cast<unsigned>(expected.size()) + 1).first->second;
        ASSERT_EQ(m_writer.getId(std::bit_cast<void*>(next)), id);
    };
    // Objects one after the other, with gaps, upwards and downwards, page by page, at odd addresses, anywhere.
    for (const std::uint64_t distance : {112ULL, 96ULL, 4096ULL, 1ULL, 40000ULL, -112ULL, -96ULL, 1ULL << 30})
    {
        for (int i = 0; i < 5000; ++i)
            check(address += distance);
        for (int i = 0; i < 5000; ++i)
            check(address + distance * (random() % 6000));
        for (int i = 0; i < 1000; ++i)
            check(address += i % 256 == 0 ? 4208 : 112);
        address = random() >> (16 + random() % 20) | 1 << 20;
    }
    for (const auto& [known, id] : expected)
        check(known);
}

TEST_F(WriterTest, GetIdNumbersAddressesThatAreAsFarApartAsTheyShareATable)
{
    constexpr std::uint64_t address = std::uint64_t(1) << 40;
    constexpr std::uint64_t reach = (std::uint64_t(1) << 34) - 8;
    const std::uint64_t addresses[] = {address,         address - reach,     address - reach + 8,
                                       address + reach, address + reach + 8, address + reach + 16};
    for (int times = 0; times < 2; ++times)
    {
        for (unsigned i = 0; i < std::size(addresses); ++i)
            EXPECT_EQ(m_writer.getId(std::bit_cast<void*>(addresses[i])), i + 1);
    }
}

TEST_F(WriterTest, ObjectsNumberedByGetIdAreStillWritten)
{
    Writing root([](Writer&) {});
    m_writer.getId(static_cast<Serializable*>(&root));
    take();
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "0 8 Scripted \n");
}

TEST_F(WriterTest, ObjectReferredToTwiceIsWrittenOnceWhateverGetIdHasNumbered)
{
    Node node;
    Node numbered;
    Writing root(
        [&](Writer& writer)
        {
            EXPECT_EQ(writer.getId(static_cast<Serializable*>(&numbered)), 2u);
            writer.writeObj(&node);
            writer.writeObj(&node);
            writer.writeObj(&numbered);
        });
    take();
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "0 8 Scripted 3 3 2 \n0 4 Node 0  0 0 0 0 0  0 0 \n2 0  1 0 0 0 0  0 0 \n");
}

TEST_F(WriterTest, ProcessingInsideAnObjectFails)
{
    Writing root([](Writer& writer) { writer.processPending(); });
    EXPECT_ASSERTION(m_writer.writeObj(&root), "!m_isWritingObj");
}

TEST_F(WriterTest, ProcessingNothingWritesNothing)
{
    take();
    m_writer.processPending();
    EXPECT_EQ(take(), "");
}

TEST_F(WriterTest, WhatAnObjectThrowsPassesThroughAndTheWriterIsNoLongerInside)
{
    Writing failing([](Writer&) { Problem::throwProblem("cannot"); });
    EXPECT_PROBLEM(m_writer.writeObj(&failing), "cannot");
    take();
    Writing next([](Writer&) {});
    m_writer.writeObj(&next);
    EXPECT_EQ(take(), "1 \n");
}

// Collections

TEST_F(WriterTest, BoardWritesItsWritableMembersInKeyOrder)
{
    take();
    Document document;
    auto* const second = new Node("second");
    auto* const hidden = new Node("hidden");
    auto* const third = new Node("third");
    hidden->writable = false;
    document.add(third);
    document.add(new Bulletin());
    document.add(hidden);
    document.add(second);
    Writing root([&document](Writer& writer) { writer.writeBulletins(document); });
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "0 8 Scripted 2 2 3 \n"
                      "0 4 Node 0  0 0 0 0 6 second 0 0 \n"
                      "2 0  1 0 0 0 5 third 0 0 \n");
}

TEST_F(WriterTest, ListWritesItsWritableMembersInItsOrderWithoutNulls)
{
    take();
    Node first("first");
    Node second("second");
    Node hidden("hidden");
    Bulletin plain;
    hidden.writable = false;
    OrderedBulletins list{BulletinKey()};
    for (Bulletin* member :
         {static_cast<Bulletin*>(&second), static_cast<Bulletin*>(nullptr), static_cast<Bulletin*>(&hidden), &plain,
          static_cast<Bulletin*>(&first), static_cast<Bulletin*>(&second)})
        list.append(member);
    Writing root([&list](Writer& writer) { writer.writeBulletins(list); });
    m_writer.writeObj(&root);
    EXPECT_EQ(take(), "0 8 Scripted 3 2 3 2 \n"
                      "0 4 Node 0  0 0 0 0 6 second 0 0 \n"
                      "2 0  1 0 0 0 5 first 0 0 \n");
}

TEST_F(WriterTest, CollectionAtTopLevelIsWrittenMemberByMember)
{
    take();
    Node first("first");
    Node second("second");
    Node inner("inner");
    first.first = &inner;
    OrderedBulletins list{BulletinKey()};
    for (Bulletin* member : std::initializer_list<Bulletin*>{&first, &second, &first})
        list.append(member);
    m_writer.writeBulletins(list);
    EXPECT_EQ(take(), "3 0 4 Node 0  0 0 0 0 5 first 2 0 \n"
                      "1 0  1 0 0 0 5 inner 0 0 \n"
                      "1 0  2 0 0 0 6 second 0 0 \n");
}

TEST_F(WriterTest, MembersOfACollectionThatFailsAreNotWrittenLater)
{
    class Refusing : public Node
    {
    public:
        bool isWritable() override { throw std::logic_error("no"); }
    } refusing;
    Node member;
    OrderedBulletins list{BulletinKey()};
    for (Bulletin* bulletin : std::initializer_list<Bulletin*>{&member, &refusing})
        list.append(bulletin);
    Writing root([&list](Writer& writer) { writer.writeBulletins(list); });
    EXPECT_THROW(m_writer.writeObj(&root), std::logic_error);
    take();
    Writing next([](Writer&) {});
    m_writer.writeObj(&next);
    EXPECT_EQ(take(), "1 \n");
}

TEST_F(WriterTest, EmptyCollectionIsZero)
{
    take();
    BulletinBoard board;
    OrderedBulletins list{BulletinKey()};
    m_writer.writeBulletins(board);
    m_writer.writeBulletins(list);
    EXPECT_EQ(take(), "0 0 ");
}

// Progress

class WriterProgressTest : public testing::Test
{
protected:
    /// Writes a root that refers to so many leaves, with an update due after each record.
    void write(std::size_t leafCount, bool showStatus)
    {
        const auto elapse = [this](Writer&) { m_status.elapse(); };
        std::vector<std::unique_ptr<Writing>> leaves;
        for (std::size_t i = 0; i < leafCount; ++i)
            leaves.push_back(std::make_unique<Writing>(elapse));
        Writing root(
            [&](Writer& writer)
            {
                elapse(writer);
                for (const auto& leaf : leaves)
                    writer.writeObj(leaf.get());
            });
        Writer writer(m_out, "Test", showStatus);
        writer.writeObj(&root);
    }

    TestStatus m_status;
    std::ostringstream m_out;
};

TEST_F(WriterProgressTest, ReportsThePercentageFromThirtyOn)
{
    // Ten ids with that of null; after the first record eight objects are left.
    write(8, true);
    EXPECT_EQ(m_status.updates, (std::vector<int>{-1, 30, 40, 50, 60, 70, 80, 90, 100}));
}

TEST_F(WriterProgressTest, ReportsNothingUnlessAskedTo)
{
    m_status.setInterrupted();
    write(8, false);
    EXPECT_TRUE(m_status.updates.empty());
    EXPECT_TRUE(m_status.texts.empty());
}

TEST_F(WriterProgressTest, InterruptEndsTheWritingBetweenTwoRecords)
{
    m_status.interruptAt(2);
    EXPECT_THROW(write(3, true), Interrupted);
    EXPECT_EQ(m_out.str(), getPreamble() + "0 8 Scripted 2 3 4 \n1 \n");
}
