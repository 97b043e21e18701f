// SPDX-License-Identifier: MIT
// Damaged and hostile streams: each ends in success or in a Problem, and takes memory only for what has arrived.
#include <kel/writer.h>

#include "support/opening.h"
#include "support/persistable.h"
#include "support/streambuffers.h"
#include "support/taking.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <regex>
#include <sstream>
#include <string>

namespace
{
Tally s_graphs("graphs the same in all ways of reading");

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
        Ending seekable = open(stream);
        const Ending pipe = openPipe(stream);
        // A damaged name gets its number when it is met first, and boards are in the order of those.
        if (pipe.graph != seekable.graph)
            seekable = open(stream);
        const Ending byteByByte = openByteByByte(stream);
        for (const Ending& ending : {seekable, pipe, byteByByte})
        {
            ASSERT_EQ(ending.message, seekable.message) << stream;
            ASSERT_EQ(ending.objects, seekable.objects) << stream;
            ASSERT_EQ(ending.graph, seekable.graph) << stream;
            ASSERT_LT(ending.memory, getBound(stream)) << stream;
            s_graphs.add(ending.graph.empty() ? 0 : 1);
        }
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
        taking->number = 7;
        taking->real = -2.5e-3;
        taking->text = "text";
        taking->block = std::string("b\nl\0k", 5);
        taking->anonymous = taking->getKey();
        taking->named = BulletinKey("name");
        taking->reference = node;
        taking->list.append(node);
        taking->list.append(taking);
        taking->references.push_back(taking);
        taking->references.push_back(node);
        taking->numbers.push_back(1);
        taking->numbers.push_back(22);
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
    const std::string bytes("0123456789abf -+.e\n\0\xff", 21);
    std::mt19937 random(11);
    for (int i = 0; i < 5000; ++i)
    {
        std::string damaged = m_stream;
        for (unsigned count = 1 + random() % 8; count > 0; --count)
            damaged[random() % damaged.size()] = bytes[random() % bytes.size()];
        expectBounded(damaged);
    }
}
