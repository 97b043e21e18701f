// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/keywriter.h>

#include <kel/namedkeys.h>
#include <kel/writer.h>

#include "support/streams.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace
{
/// A stream into which keys are written.
struct KeyStream
{
    KeyStream() { out.str(""); }

    std::string write(const BulletinKey& key)
    {
        out.str("");
        key.write(writer);
        return out.str();
    }

    std::ostringstream out;
    Writer writer{out, "Test", false};
};
} // namespace

TEST(KeyWriter, HasTheKeyOfItsName)
{
    EXPECT_EQ(KeyWriter::getStaticKey(), BulletinKey("KeyWriter"));
    EXPECT_EQ(KeyWriter().getKey(), KeyWriter::getStaticKey());
}

TEST(KeyWriter, NamedKeyIsWrittenAsItsName)
{
    KeyStream stream;
    EXPECT_EQ(stream.write(BulletinKey("Load")), "4 Load ");
    EXPECT_EQ(stream.write(BulletinKey("with space\n")), "11 with space\n ");
    EXPECT_EQ(stream.write(BulletinKey("\xc3\xa9")), "2 \xc3\xa9 ");
}

TEST(KeyWriter, KeyWithAnAliasIsWrittenAsItsPrimaryName)
{
    const BulletinKey key("Primary", "Alias");
    EXPECT_EQ(KeyStream().write(BulletinKey("Alias")), "7 Primary ");
}

TEST(KeyWriter, AnonymousKeysAreNumberedFromZeroInHexadecimal)
{
    KeyStream stream;
    for (const char* const number : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "a", "b"})
        EXPECT_EQ(stream.write(BulletinKey()), std::string("0  ") + number + " ");
}

TEST(KeyWriter, AnonymousKeyMetAgainKeepsItsNumber)
{
    KeyStream stream;
    const BulletinKey first;
    const BulletinKey second;
    EXPECT_EQ(stream.write(second), "0  0 ");
    EXPECT_EQ(stream.write(first), "0  1 ");
    EXPECT_EQ(stream.write(second), "0  0 ");
    EXPECT_EQ(stream.write(first), "0  1 ");
}

TEST(KeyWriter, DerivedOneThatTheStreamHoldsNumbersItsKeys)
{
    class Derived : public KeyWriter
    {
    };
    KeyStream stream;
    const Derived& own = stream.writer.adopt(std::make_unique<Derived>());
    const BulletinKey key;
    EXPECT_EQ(stream.write(BulletinKey()), "0  0 ");
    EXPECT_EQ(stream.write(key), "0  1 ");
    EXPECT_EQ(stream.write(key), "0  1 ");
    EXPECT_EQ(stream.writer.getPtr(KeyWriter::getStaticKey()), &own);
}

TEST(KeyWriter, NumbersManyKeys)
{
    KeyStream stream;
    const BulletinKey first;
    stream.write(first);
    for (int i = 1; i < 0x1234; ++i)
        stream.write(BulletinKey());
    EXPECT_EQ(stream.write(BulletinKey()), "0  1234 ");
    EXPECT_EQ(stream.write(first), "0  0 ");
}

TEST(KeyWriter, EachStreamNumbersItsKeysIndependently)
{
    KeyStream first;
    KeyStream second;
    const BulletinKey key;
    first.write(BulletinKey());
    EXPECT_EQ(first.write(key), "0  1 ");
    EXPECT_EQ(second.write(key), "0  0 ");
}

TEST(KeyWriter, ComesIntoBeingWithTheFirstAnonymousKey)
{
    KeyStream stream;
    stream.write(BulletinKey("Load"));
    EXPECT_FALSE(stream.writer.hasKey(KeyWriter::getStaticKey()));
    stream.write(BulletinKey());
    EXPECT_TRUE(stream.writer.getPtr<KeyWriter>());
}

TEST(KeyWriter, EmptyNameIsWrittenAsAnAnonymousKey)
{
    EXPECT_EQ(KeyStream().write(BulletinKey("")), "0  0 ");
}

TEST(KeyWriter, LeavesTheStreamInDecimal)
{
    KeyStream stream;
    stream.write(BulletinKey());
    stream.out.str("");
    stream.out << 10;
    EXPECT_EQ(stream.out.str(), "10");
}

TEST(NamedKeysInStreams, WriteTellsWhetherThereIsAName)
{
    KeyStream stream;
    EXPECT_TRUE(NamedKeys::getSingleton().write(stream.writer, BulletinKey("Load").getNumber()));
    EXPECT_EQ(stream.out.str(), "4 Load ");
    stream.out.str("");
    EXPECT_FALSE(NamedKeys::getSingleton().write(stream.writer, BulletinKey().getNumber()));
    EXPECT_EQ(stream.out.str(), "0  ");
}

TEST(KeyWriter, AnonymousKeysKeepTheirNumbersInWhateverOrderTheyCome)
{
    std::mt19937 random(8);
    std::vector<BulletinKey> made(3000);
    // In turn, every second one, backwards, anyhow.
    for (const int step : {1, 2, -1, 0})
    {
        KeyStream stream;
        std::map<unsigned, std::size_t> expected;
        std::size_t next = step < 0 ? made.size() - 1 : 0;
        for (int i = 0; i < 4000; ++i)
        {
            const BulletinKey key = made[(i % 3 == 0 || step == 0 ? random() : next) % made.size()];
            next += static_cast<std::size_t>(step);
            const std::size_t number = expected.try_emplace(key.getNumber(), expected.size()).first->second;
            std::ostringstream written;
            written << "0  " << std::hex << number << ' ';
            ASSERT_EQ(stream.write(key), written.str());
        }
    }
}
