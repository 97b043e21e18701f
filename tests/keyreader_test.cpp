// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/keyreader.h>

#include <kel/namedkeys.h>
#include <kel/reader.h>
#include <kel/usecounter.h>

#include "support/problem.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace
{
/// A stream from which keys are read.
struct KeyStream
{
    explicit KeyStream(const std::string& text) : in(getPreamble() + text) {}

    BulletinKey read()
    {
        BulletinKey key("Before");
        key.read(reader);
        return key;
    }

    std::istringstream in;
    Reader reader{in, "Test", false};
};
} // namespace

TEST(KeyReader, HasTheKeyOfItsName)
{
    EXPECT_EQ(KeyReader::getStaticKey(), BulletinKey("KeyReader"));
    EXPECT_EQ(KeyReader().getKey(), KeyReader::getStaticKey());
}

TEST(KeyReader, NameGivesTheKeyThatItHasInThisRun)
{
    const BulletinKey key("Known");
    EXPECT_EQ(KeyStream("5 Known ").read(), key);
    EXPECT_EQ(KeyStream("11 with space\n ").read(), BulletinKey("with space\n"));
}

TEST(KeyReader, NameNotSeenInThisRunIsRegistered)
{
    const BulletinKey key = KeyStream("6 Unseen ").read();
    EXPECT_EQ(key.getName(), "Unseen");
    EXPECT_EQ(key, BulletinKey("Unseen"));
}

TEST(KeyReader, AnonymousKeysAreFreshKeysOfThisRun)
{
    KeyStream stream("0  0 0  1 ");
    const BulletinKey before;
    const BulletinKey first = stream.read();
    const BulletinKey second = stream.read();
    const BulletinKey after;
    EXPECT_EQ(first.getName(), "");
    EXPECT_TRUE(before < first && first < second && second < after);
}

TEST(KeyReader, AnonymousKeysAreEqualWhereTheirNumbersAre)
{
    KeyStream stream("0  a 0  0 0  A 0  0xa 0  0 ");
    const BulletinKey first = stream.read();
    const BulletinKey second = stream.read();
    EXPECT_EQ(stream.read(), first);
    EXPECT_EQ(stream.read(), first);
    EXPECT_EQ(stream.read(), second);
    EXPECT_NE(first, second);
}

TEST(KeyReader, MeetsNumbersInAnyOrderAndOfAnySize)
{
    KeyStream stream("0  ffffffff 0  7 0  ffffffff 0  7 ");
    const BulletinKey first = stream.read();
    const BulletinKey second = stream.read();
    EXPECT_EQ(stream.read(), first);
    EXPECT_EQ(stream.read(), second);
}

TEST(KeyReader, SameStreamReadTwiceGivesOtherKeys)
{
    EXPECT_NE(KeyStream("0  0 ").read(), KeyStream("0  0 ").read());
}

TEST(KeyReader, ComesIntoBeingWithTheFirstAnonymousKey)
{
    KeyStream stream("4 Load 0  0 ");
    stream.read();
    EXPECT_FALSE(stream.reader.hasKey(KeyReader::getStaticKey()));
    stream.read();
    EXPECT_TRUE(stream.reader.getPtr<KeyReader>());
}

TEST(KeyReader, LeavesTheStreamInDecimal)
{
    KeyStream stream("0  a 10 ");
    stream.read();
    int number = 0;
    stream.in >> number;
    EXPECT_EQ(number, 10);
}

TEST(KeyReader, CutNameFails)
{
    EXPECT_PROBLEM(KeyStream("4 Loa").read(), "Premature end of file");
    EXPECT_PROBLEM(KeyStream("4").read(), "Premature end of file");
    EXPECT_PROBLEM(KeyStream("").read(), "Invalid stream");
    EXPECT_PROBLEM(KeyStream("x").read(), "Invalid stream");
}

TEST(KeyReader, DamagedNumberIsReportedByTheNextReadThatTestsTheStream)
{
    KeyStream stream("0  x 5 ");
    EXPECT_NO_THROW(stream.read());
    EXPECT_TRUE(stream.in.fail());
    int number = 0;
    EXPECT_PROBLEM(stream.reader.read(number), "Invalid stream");
}

TEST(NamedKeysInStreams, ReadTellsWhetherThereIsANameAndLeavesTheKeyOtherwise)
{
    KeyStream stream("4 Load 0  ");
    BulletinKey key("Before");
    EXPECT_TRUE(NamedKeys::getSingleton().read(stream.reader, key));
    EXPECT_EQ(key, BulletinKey("Load"));
    EXPECT_FALSE(NamedKeys::getSingleton().read(stream.reader, key));
    EXPECT_EQ(key, BulletinKey("Load"));
}

TEST(UseCounterInStreams, IsWrittenAndReadAsItsCount)
{
    UseCounter counter;
    for (int i = 0; i < 12; ++i)
        counter.incrementUse();
    std::ostringstream out;
    Writer writer(out, "Test", false);
    out.str("");
    counter.write(writer);
    EXPECT_EQ(out.str(), "12 ");
    UseCounter read;
    KeyStream stream("12 5");
    read.read(stream.reader);
    EXPECT_EQ(read.getCount(), 12u);
    EXPECT_PROBLEM(read.read(stream.reader), "Premature end of file");
}
