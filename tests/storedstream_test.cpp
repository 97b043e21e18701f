// SPDX-License-Identifier: MIT
// Streams of each kind, stored in tests/data, are what the library writes to the last byte, in memory and in files.
// They are never renewed: users have files of them.
#include <kel/file_kel.h>
#include <kel/filewriter.h>
#include <kel/reader.h>
#include <kel/writer.h>

#include "support/installed.h"
#include "support/persistable.h"
#include "support/streams.h"
#include "support/temporarydirectory.h"
#include "support/testplatform.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{
/// The records of a stored stream. The version table before them depends on the process.
std::string getStored(const std::string& name)
{
    std::ifstream file(KEL_TEST_DATA "/" + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// Where two streams begin to differ, with some of both: a stream is too long to be shown.
testing::AssertionResult isSame(const std::string& written, const std::string& stored)
{
    if (written == stored)
        return testing::AssertionSuccess();
    std::size_t at = 0;
    while (at < written.size() && at < stored.size() && written[at] == stored[at])
        ++at;
    return testing::AssertionFailure() << "from byte " << at << " on: " << written.substr(at, 60)
                                       << "\nstored: " << stored.substr(at, 60);
}

/// A text of any length and width.
std::string makeText(unsigned seed)
{
    static const std::string pieces[] = {"a", " ", "\n", "7", "\xc3\xa9", "\xe2\x82\xac", "\xf0\x9f\x98\x80", "beam"};
    std::string text;
    for (unsigned i = 0; i < seed % 23; ++i)
        text += pieces[(seed / 23 + i * i) % 8];
    return seed % 97 == 0 ? text + std::string(700, 'x') : text;
}

BulletinKey makeKey(unsigned seed, const BulletinKey& earlier)
{
    if (seed % 11 == 0)
        return BulletinKey("Key " + std::to_string(seed % 5));
    return seed % 13 == 0 ? earlier : BulletinKey();
}

double makeReal(std::mt19937_64& random)
{
    const auto number = std::bit_cast<double>(random());
    return std::isfinite(number) ? number : 0;
}

/// Nodes with all kinds of keys and references; those with a key of their own are on a board as well.
NodeList* makeGraph()
{
    std::mt19937_64 random(5);
    auto* const board = new Document();
    auto* const list = new NodeList();
    list->append(board);
    std::vector<Node*> nodes;
    for (unsigned i = 0; i < 300; ++i)
    {
        auto* const node = new Node(makeText(i));
        node->setKey(makeKey(i, nodes.empty() ? BulletinKey() : nodes[i / 2]->getKey()));
        node->x = static_cast<double>(random() % 2000000) / 1000 - 1000;
        node->y = makeReal(random);
        node->first = nodes.empty() ? nullptr : nodes[random() % nodes.size()];
        node->writable = i % 17 != 0;
        if (i % 11 != 0 && i % 13 != 0)
            board->add(node);
        list->append(node);
        nodes.push_back(node);
    }
    for (unsigned i = 0; i < nodes.size(); ++i)
        nodes[i]->second = nodes[(i + 7) % nodes.size()];
    static Bulletin plain; // boards of these tests delete nothing
    board->add(&plain);
    for (unsigned i = 0; i < 50; ++i)
        list->append(i % 10 == 0 ? nullptr : nodes[random() % nodes.size()]);
    return list;
}

void writeReals(Writer& writer)
{
    std::mt19937_64 random(6);
    for (const int precision : {6, 17, 1, 0, 9, 25})
    {
        writer.getOut().precision(precision);
        for (int i = 0; i < 300; ++i)
            writer.write(makeReal(random)).write(static_cast<double>(random() % 4000000000) / 1e6);
        for (int exponent = -20; exponent <= 20; ++exponent)
            writer.write(std::pow(10, exponent)).write(-std::pow(10, exponent) * 9.9999999999999995);
        writer.write(0.0).write(-0.0).write(0.1F).write(1.5L).write(5e-324).write(1.7976931348623157e308);
        writer.write(std::numeric_limits<double>::infinity()).write(-std::numeric_limits<double>::quiet_NaN());
        writer.getOut() << '\n';
    }
}

void writeIntegers(Writer& writer)
{
    for (int shift = 0; shift < 64; ++shift)
    {
        const std::uint64_t number = ~std::uint64_t(0) >> shift;
        writer.write(number).write(static_cast<long>(number)).write(static_cast<unsigned>(number));
        writer.write(static_cast<short>(number)).write(static_cast<unsigned short>(number));
        writer.write(static_cast<char>(number)).write(static_cast<unsigned char>(number)).write(number % 2 == 1);
        writer.writeHex(static_cast<unsigned>(number)).write(U'\x1F600').write(L'\xe9');
    }
}

void writeWithSettings(Writer& writer)
{
    writer.getOut() << std::fixed;
    writer.write(12.5).write(7);
    writer.getOut() << std::scientific << std::showpos;
    writer.write(12.5).write(7);
    writer.getOut() << std::defaultfloat << std::noshowpos << std::setw(9) << std::setfill('*');
    writer.write(7).write(7);
}

void writeBlocks(Writer& writer)
{
    std::string bytes;
    for (int i = 0; i < 20000; ++i)
        bytes += static_cast<char>(i * i);
    for (const unsigned size : {0u, 1u, 256u, 8191u, 20000u})
        writer.write(size, bytes.data());
    for (unsigned seed = 0; seed < 100; ++seed)
    {
        Ztring text;
        text.fromUtf8(makeText(seed));
        writer.write(text);
    }
}

Scripted* makeScripted(std::function<void(Writer&)> write)
{
    auto* const object = new Scripted();
    object->onWrite = std::move(write);
    return object;
}
} // namespace

class StoredStreamTest : public testing::Test
{
protected:
    /// What a file has behind its header and its version table.
    std::string writeFile(Serializable* root)
    {
        {
            FileWriter file;
            file.open(Kel::File(m_directory / "a"), false)->writeObj(root);
            file.close();
        }
        const std::string bytes = m_directory.read("a");
        return bytes.substr(bytes.find('\n', bytes.find('\n') + 1) + 1);
    }

    void expectStored(const std::string& name, Serializable* root)
    {
        const std::string stored = getStored(name);
        EXPECT_TRUE(isSame(write(root), stored));
        EXPECT_TRUE(isSame(writeFile(root), stored));
    }

    PersistableGuard m_guard;
    TestStatus m_status;
    TemporaryDirectory m_directory;
    Installed<TestPlatform> m_platform;
};

TEST_F(StoredStreamTest, GraphIsWrittenAsItAlwaysWas)
{
    expectStored("graph", makeGraph());
}

TEST_F(StoredStreamTest, GraphThatWasReadIsWrittenAsItWas)
{
    const std::string stored = getStored("graph");
    EXPECT_TRUE(isSame(write(read<NodeList>(stored)), stored));
}

TEST_F(StoredStreamTest, NumbersAreWrittenAsTheyAlwaysWere)
{
    const auto writeNumbers = [](Writer& writer)
    {
        writeIntegers(writer);
        writeReals(writer);
        writeWithSettings(writer);
    };
    expectStored("numbers", makeScripted(writeNumbers));
}

TEST_F(StoredStreamTest, BlocksAndTextsAreWrittenAsTheyAlwaysWere)
{
    expectStored("blocks", makeScripted(writeBlocks));
}
