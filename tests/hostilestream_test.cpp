// SPDX-License-Identifier: MIT
// Damaged and hostile streams: each ends in success or in a Problem, and takes memory only for what has arrived.
#include <kel/problem.h>
#include <kel/reader.h>
#include <kel/writer.h>

#include "support/filledpipe.h"
#include "support/memorypeak.h"
#include "support/persistable.h"
#include "support/problem.h"
#include "support/streambuffers.h"
#include "support/streams.h"
#include "support/tally.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <memory>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace
{
/// Reads one of every item.
class Taking : public Bulletin, public Persistable
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }

    void write(Writer& writer) override
    {
        writer.write(7u).write(-2.5e-3).write<Ztring>("text").write(5, "b\nl\0k");
        getKey().write(writer);
        BulletinKey("name").write(writer);
        writer.writeObj(dynamic_cast<Serializable*>(reference));
        writer.writeBulletins(list);
    }

    void read(Reader& reader) override
    {
        unsigned number = 0;
        double real = 0;
        Ztring text;
        char* bytes = nullptr;
        reader.read(number).read(real).read(text);
        reader.read(number, bytes);
        const std::unique_ptr<char[]> owned(bytes);
        BulletinKey key(getKey());
        key.read(reader);
        key.read(reader);
        reader.read(reference);
        reader.readBulletins(list);
    }

    bool fixup(Reader& reader) override
    {
        reader.fix(reference);
        reader.fixBulletins(list);
        return true;
    }

    static inline CreatorOf<Taking> s_creator{"Taking"};

    Bulletin* reference = nullptr;
    OrderedBulletins list{BulletinKey()};
};

/// How the reading of a stream ended, and how much memory it took.
struct Ending
{
    std::string message; // empty: a root was returned
    std::size_t memory = 0;
};

Tally s_streams("hostile streams");

Ending open(std::istream& in)
{
    s_streams.add();
    Ending ending;
    const memorypeak::Meter meter;
    try
    {
        Reader reader(in, "Test", false);
        EXPECT_TRUE(reader.perform());
    }
    catch (const Problem& problem)
    {
        ending.message = problem.getMessage().toUtf8();
        EXPECT_FALSE(ending.message.empty());
    }
    ending.memory = meter.getPeak();
    Persistable::deleteAll();
    return ending;
}

Ending open(const std::string& stream)
{
    std::istringstream in(stream);
    return open(in);
}

Ending openPipe(const std::string& stream)
{
    const FilledPipe pipe(stream);
    std::ifstream in(pipe.getPath(), std::ios::binary);
    return open(in);
}

Ending openByteByByte(const std::string& stream)
{
    DrippingBuffer buffer(stream);
    std::istream in(&buffer);
    return open(in);
}

/// A stream of two objects takes at least four bytes, and an object takes some hundreds.
std::size_t getBound(const std::string& stream)
{
    return 65536 + 1000 * stream.size();
}
} // namespace

class HostileStreamTest : public testing::Test
{
protected:
    void SetUp() override
    {
        // What is made once in a process is no part of what a stream takes.
        EXPECT_EQ(open(m_stream).message, "");
    }

    void expectBounded(const std::string& stream)
    {
        const Ending seekable = open(stream);
        const Ending pipe = openPipe(stream);
        const Ending byteByByte = openByteByByte(stream);
        ASSERT_EQ(pipe.message, seekable.message) << stream;
        ASSERT_EQ(byteByByte.message, seekable.message) << stream;
        ASSERT_LT(seekable.memory, getBound(stream)) << stream;
        ASSERT_LT(pipe.memory, getBound(stream)) << stream;
        ASSERT_LT(byteByByte.memory, getBound(stream)) << stream;
        ASSERT_EQ(Persistable::getCount(), 0u);
    }

    /// Reading meets an error behind so many bytes, which come one by one or all at once.
    void expectErrorSurvived(std::streambuf& buffer, std::size_t position)
    {
        std::istream in(&buffer);
        const Ending ending = open(in);
        ASSERT_TRUE(in.bad()) << position;
        // Behind the last record an error is the end of the reading, of which only the stream tells.
        const std::size_t lastRecord = m_stream.find("0 7 Unknown") - 1;
        ASSERT_TRUE(!ending.message.empty() || position >= lastRecord) << position;
        ASSERT_LT(ending.memory, getBound(m_stream));
        ASSERT_EQ(Persistable::getCount(), 0u);
    }

    static std::string makeStream()
    {
        Document document;
        auto* const taking = new Taking();
        auto* const node = new Node("node");
        node->first = taking;
        node->second = &document;
        taking->reference = node;
        taking->list.append(node);
        taking->list.append(taking);
        document.add(taking);
        document.add(node);
        document.add(new Document());
        std::ostringstream out;
        Writer(out, "Test", false).writeObj(&document);
        return out.str() + "0 7 Unknown 1 2 3 \n1 0 \n4 some \n";
    }

    TestStatus m_status;
    const std::string m_stream = makeStream();
};

TEST_F(HostileStreamTest, StreamMayBeCutAtEveryByte)
{
    for (std::size_t size = 0; size < m_stream.size(); ++size)
        expectBounded(m_stream.substr(0, size));
}

TEST_F(HostileStreamTest, EveryByteMayBecomeAnyOther)
{
    for (std::size_t position = 0; position < m_stream.size(); ++position)
    {
        for (int value = 0; value < 256; value += position % 4 == 0 ? 1 : 7)
        {
            std::string damaged = m_stream;
            damaged[position] = static_cast<char>(value);
            expectBounded(damaged);
        }
    }
}

TEST_F(HostileStreamTest, EveryByteMayBeLostOrDoubled)
{
    for (std::size_t position = 0; position < m_stream.size(); ++position)
    {
        std::string damaged = m_stream;
        expectBounded(damaged.erase(position, 1));
        damaged = m_stream;
        expectBounded(damaged.insert(position, 1, m_stream[position]));
    }
}

TEST_F(HostileStreamTest, ReadingMayFailAtEveryByte)
{
    for (std::size_t position = 0; position <= m_stream.size(); ++position)
    {
        DrippingBuffer dripping(m_stream.substr(0, position), true);
        expectErrorSurvived(dripping, position);
        BreakingBuffer breaking(m_stream.substr(0, position));
        expectErrorSurvived(breaking, position);
    }
}

TEST_F(HostileStreamTest, EveryNumberMayBecomeAnyOther)
{
    const std::regex number("[-+.0-9a-fx]+");
    const std::sregex_iterator end;
    std::size_t count = 0;
    for (std::sregex_iterator found(m_stream.begin(), m_stream.end(), number); found != end; ++found, ++count)
    {
        for (const char* const other : {"0", "-1", "2147483648", "4294967295", "4294967296", "9223372036854775808", "x",
                                        "80000000", "ffffffff", "100000000", "8000000000000000", "ffffffffffffffff"})
        {
            const auto position = static_cast<std::size_t>(found->position());
            expectBounded(std::string(m_stream).replace(position, static_cast<std::size_t>(found->length()), other));
        }
    }
    EXPECT_GT(count, 50u);
}

TEST_F(HostileStreamTest, SeveralBytesMayChangeAtOnce)
{
    const std::string bytes = "0123456789abf -+.e\n\0\xff";
    std::mt19937 random(11);
    for (int i = 0; i < 5000; ++i)
    {
        std::string damaged = m_stream;
        for (unsigned count = 1 + random() % 8; count > 0; --count)
            damaged[random() % damaged.size()] = bytes[random() % bytes.size()];
        expectBounded(damaged);
    }
}

TEST_F(HostileStreamTest, ClaimsEndInTheirProblemAndTakeNoMemory)
{
    const std::string head = getPreamble();
    const std::string taking = head + "0 6 Taking 7 -2.5 ";
    struct Claim
    {
        const char* what;
        std::string stream;
        const char* message;
    };
    const std::vector<Claim> claims = {
        {"header length", "4294967295 Test \n", "Premature end of file"},
        {"header length beyond 32 bits", "4294967296 Test \n", "Invalid stream"},
        {"negative header length", "-1 Test \n", "Premature end of file"},
        {"count of versions", "4 Test \n4294967295 6 Solver 1 2 3 \n", "Invalid stream"},
        {"length of a version's key", "4 Test \n1 4294967295 Solver 1 2 3 \n", "Premature end of file"},
        {"length of a class name", head + "0 4294967295 Node 1 \n", "Premature end of file"},
        {"class number", head + "4294967295 \n", "Assertion Failed.\nExpression: m_creators->size() >= classId"},
        {"length of a text", taking + "4294967295 text \n", "Premature end of file"},
        {"length of a text beyond a gigabyte", taking + "1073741825 text \n", "Premature end of file"},
        {"size of a block", taking + "4 text 4294967295 block \n", "Premature end of file"},
        {"size of a small block", taking + "4 text 16000 block \n", "Premature end of file"},
        {"length of a key", taking + "4 text 1 b 4294967295 name \n", "Premature end of file"},
        {"number of an anonymous key", taking + "4 text 1 b 0  ffffffff 4 name 0 0 \n", ""},
        {"reference", taking + "4 text 1 b 0  0 4 name ffffffffffffffff 0 \n", "Unknown ptr: 18446744073709551615"},
        {"reference beyond 64 bits", taking + "4 text 1 b 0  0 4 name 10000000000000000 0 \n", "Invalid stream"},
        {"count of a collection", taking + "4 text 1 b 0  0 4 name 0 4294967295 1 1 1 \n", "Invalid stream"},
        {"count of an empty collection", head + "0 8 Document 4294967295 ", "Invalid stream"},
    };
    for (const auto& [what, stream, message] : claims)
    {
        for (const Ending& ending : {open(stream), openPipe(stream), openByteByByte(stream)})
        {
            EXPECT_EQ(ending.message.substr(0, ending.message.find("\nFile: ")), message) << what;
            EXPECT_LT(ending.memory, 65536u) << what;
        }
    }
}

TEST_F(HostileStreamTest, LineOfAnUnknownClassTakesNoMemoryHoweverLong)
{
    for (const std::size_t length : {1000u, 1000000u, 10000000u})
    {
        const std::string line(length, 'x');
        const std::string stream = getPreamble() + "0 8 Document 0 \n0 7 Unknown " + line + "\n1 0 \n";
        for (const Ending& ending : {open(stream), openByteByByte(stream)})
        {
            EXPECT_EQ(ending.message, "");
            EXPECT_LT(ending.memory, 16384u);
        }
    }
}

TEST_F(HostileStreamTest, MemoryForALongTextIsInProportionToItsBytes)
{
    const std::string text(1000000, 'x');
    const Ending ending = open(getPreamble() + "0 6 Taking 7 -2.5 4294967295 " + text);
    EXPECT_EQ(ending.message, "Premature end of file");
    EXPECT_LT(ending.memory, 4 * text.size());
}

TEST_F(HostileStreamTest, MemoryForALongBlockIsInProportionToItsBytes)
{
    const std::string block(1000000, 'x');
    const Ending ending = open(getPreamble() + "0 6 Taking 7 -2.5 4 text 4294967295 " + block);
    EXPECT_EQ(ending.message, "Premature end of file");
    EXPECT_LT(ending.memory, 4 * block.size());
}
