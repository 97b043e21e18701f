// SPDX-License-Identifier: MIT
// Streams that claim more than they hold: what is read from them takes memory only for what has arrived.
#include <kel/csv.h>
#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/keyreader.h>
#include <kel/namedkeys.h>
#include <kel/nativereader.h>
#include <kel/savedline.h>
#include <kel/usecounter.h>
#include <kel/version.h>
#include <kel/versions.h>

#include "support/opening.h"
#include "support/persistable.h"
#include "support/streams.h"
#include "support/taking.h"
#include "support/temporarydirectory.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace
{
template <class T>
void readOne(Scripted&, Reader& reader)
{
    T value{};
    value.read(reader);
}

void readText(Scripted&, Reader& reader)
{
    Ztring text;
    reader.read(text);
}

void readString(Scripted&, Reader& reader)
{
    std::string text;
    reader.readString(text);
}

void readBlock(Scripted&, Reader& reader)
{
    unsigned size = 0;
    char* bytes = nullptr;
    reader.read(size, bytes);
    delete[] bytes;
}

template <class T, class ElementReader>
void readArray(Reader& reader, const ElementReader& readElement)
{
    Array<T> elements;
    reader.read(elements, readElement);
}

void readReferences(Scripted&, Reader& reader)
{
    readArray<Bulletin*>(reader, NativeReader());
}

void readNumbers(Scripted&, Reader& reader)
{
    readArray<unsigned>(reader, Taking::readNumber);
}

void readHexNumbers(Scripted&, Reader& reader)
{
    readArray<unsigned>(reader, [](Reader& in, unsigned& element) { in.readHex(element); }); // which does not check
}

void readTexts(Scripted&, Reader& reader)
{
    readArray<Ztring>(reader, [](Reader& in, Ztring& element) { in.read(element); });
}

void readSavedLine(Scripted& object, Reader& reader)
{
    reader.saveLine(object.getKey());
    const SavedLine::LineReader line(reader, object.getKey());
    readNumbers(object, reader);
}

void readBoard(Scripted&, Reader& reader)
{
    BulletinBoard board;
    reader.readBulletins(board);
}

void readList(Scripted&, Reader& reader)
{
    OrderedBulletins list{BulletinKey()};
    reader.readBulletins(list);
}

void readMembers(Scripted& object, Reader& reader)
{
    reader.readBulletinsFor(object);
}

void readNamedKey(Scripted&, Reader& reader)
{
    BulletinKey key;
    NamedKeys::getSingleton().read(reader, key);
}

void readKeyNumber(Scripted&, Reader& reader)
{
    KeyReader::read(reader);
}

void readClass(Scripted&, Reader& reader)
{
    reader.getCreator(0);
}

void readRecord(Scripted&, Reader& reader)
{
    Reader::FixingQueue queue;
    reader.loadObj(queue, 7);
}

/// A function that takes a count, a length or a number from the stream.
struct Function
{
    const char* name;
    void (*use)(Scripted&, Reader&);
    const char* bytes;
    const char* message; // empty: there is nothing to refuse
};

/// Every one there is.
const std::vector<Function> s_functions = {
    {"Reader::read of a text", readText, "4294967295 text ", "Premature end of file"},
    {"Reader::read of a text of a gigabyte", readText, "1073741825 text ", "Premature end of file"},
    {"Reader::readString", readString, "4294967295 text ", "Premature end of file"},
    {"Reader::read of a block", readBlock, "4294967295 block ", "Premature end of file"},
    {"Reader::read of a small block", readBlock, "16000 block ", "Premature end of file"},
    {"Reader::read of references", readReferences, "4294967295 1 1 1 ", "Invalid stream"},
    {"Reader::read of numbers", readNumbers, "4294967295 1 2 3 ", "Invalid stream"},
    {"Reader::read of hexadecimal numbers", readHexNumbers, "4294967295 a b c ", "Invalid stream"},
    {"Reader::read of texts", readTexts, "4294967295 1 a 1 b ", "Invalid stream"},
    {"Reader::read of long texts", readTexts, "4294967295 1 a 4294967295 b ", "Premature end of file"},
    {"Reader::saveLine", readSavedLine, "4294967295 1 2 3 ", "Invalid stream"},
    {"Reader::readBulletins of a board", readBoard, "4294967295 1 1 1 ", "Invalid stream"},
    {"Reader::readBulletins of a list", readList, "4294967295 1 1 1 ", "Invalid stream"},
    {"Reader::readBulletinsFor", readMembers, "4294967295 1 1 1 ", "Invalid stream"},
    {"Reader::getCreator", readClass, "4294967295 Node ", "Premature end of file"},
    {"Reader::loadObj", readRecord, "0 4294967295 Node ", "Premature end of file"},
    {"BulletinKey::read", readOne<BulletinKey>, "4294967295 name ", "Premature end of file"},
    {"NamedKeys::read", readNamedKey, "4294967295 name ", "Premature end of file"},
    {"KeyReader::read", readKeyNumber, "ffffffff ", ""},
    {"Version::read", readOne<Version>, "4294967295 Solver 1 2 3 ", "Premature end of file"},
    {"Versions::read", readOne<Versions>, "4294967295 6 Solver 1 2 3 ", "Invalid stream"},
    {"UseCounter::read", readOne<UseCounter>, "4294967295 ", ""},
};
} // namespace

class StreamClaimsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        // What is made once in a process is no part of what a stream takes.
        EXPECT_EQ(open(m_head + "0 8 Document 0 \n").message, "");
    }

    Ending openFile(const std::string& stream)
    {
        const Kel::File path(m_directory.write("model.x", stream));
        return getEnding(
            [&path]
            {
                FileReader file;
                return file.open(path, false)->perform();
            });
    }

    void expectEnding(const std::string& stream, const std::string& message)
    {
        for (const Ending& ending : {open(stream), openPipe(stream), openByteByByte(stream), openFile(stream)})
        {
            // An assertion tells its place behind its expression.
            EXPECT_EQ(ending.message.substr(0, ending.message.find("\nFile: ")), message) << stream;
            EXPECT_LT(ending.memory, 65536u) << stream;
        }
    }

    void expectInProportion(const std::string& record, const std::string& message)
    {
        const std::string stream = m_head + record;
        const Ending ending = open(stream);
        EXPECT_EQ(ending.message, message);
        EXPECT_LT(ending.memory, 4 * stream.size());
    }

    TestStatus m_status;
    TemporaryDirectory m_directory;
    const std::string m_head = getPreamble("Morvane Test");
};

TEST_F(StreamClaimsTest, EveryNumberOfTheFormatMayBeAClaim)
{
    const std::string taking = m_head + "0 6 Taking 7 -2.5 4 text 1 b 0  ";
    expectEnding("4294967295 Test \n", "Premature end of file");
    expectEnding("4294967296 Test \n", "Invalid stream");
    expectEnding("-1 Test \n", "Premature end of file");
    expectEnding("12 Morvane Test \n4294967295 6 Solver 1 2 3 \n", "Invalid stream");
    expectEnding("12 Morvane Test \n1 4294967295 Solver 1 2 3 \n", "Premature end of file");
    expectEnding(m_head + "0 4294967295 Node 1 \n", "Premature end of file");
    expectEnding(m_head + "4294967295 \n", "Assertion Failed.\nExpression: m_creators->size() >= classId");
    expectEnding(m_head + "0 8 Document 4294967295 ", "Invalid stream");
    expectEnding(taking + "ffffffff 4 name 0 0 0 0 \n", "");
    expectEnding(taking + "0 4 name ffffffffffffffff 0 0 0 \n", "Unknown ptr: 18446744073709551615");
    expectEnding(taking + "0 4 name 10000000000000000 0 0 0 \n", "Invalid stream");
    expectEnding(taking + "0 4 name 0 4294967295 1 1 1 \n", "Invalid stream");
    expectEnding(taking + "0 4 name 0 0 4294967295 1 1 1 \n", "Invalid stream");
    expectEnding(taking + "0 4 name 0 0 0 4294967295 1 1 1 \n", "Invalid stream");
}

TEST_F(StreamClaimsTest, EveryFunctionThatReadsACountOrALengthTakesItForAClaim)
{
    for (const auto& [name, use, bytes, message] : s_functions)
    {
        SCOPED_TRACE(name);
        Scripted::onRead = use;
        expectEnding(m_head + "0 8 Scripted " + bytes + "\n", message);
    }
    Scripted::onRead = nullptr;
}

TEST_F(StreamClaimsTest, LineOfAnUnknownClassTakesNoMemoryHoweverLong)
{
    for (const std::size_t length : {1000u, 1000000u, 10000000u})
    {
        const std::string line(length, 'x');
        const std::string stream = m_head + "0 8 Document 0 \n0 7 Unknown " + line + "\n1 0 \n";
        for (const Ending& ending : {open(stream), openByteByByte(stream)})
        {
            EXPECT_EQ(ending.message, "");
            EXPECT_LT(ending.memory, 16384u);
        }
    }
}

TEST_F(StreamClaimsTest, MemoryIsInProportionToTheBytesThatAreThere)
{
    const std::string bytes(1000000, 'x');
    expectInProportion("0 6 Taking 7 -2.5 4294967295 " + bytes, "Premature end of file");
    expectInProportion("0 6 Taking 7 -2.5 4 text 4294967295 " + bytes, "Premature end of file");
    expectInProportion("0 6 Taking 7 -2.5 4 text 1 b 0  0 4 name 0 0 0 " + bytes, "Invalid stream");
}

TEST_F(StreamClaimsTest, MemoryForAFieldThatNobodyEndsIsInProportionToItsBytes)
{
    const std::string bytes = '"' + std::string(1000000, 'x');
    std::istringstream in(bytes);
    std::string field;
    const memorypeak::Meter meter;
    Csv(Kel::File("table.csv")).readElement(in, field);
    EXPECT_EQ(field.size(), bytes.size() - 1);
    EXPECT_LT(meter.getPeak(), 4 * bytes.size());
}
