// SPDX-License-Identifier: MIT
// Whole graphs of objects, written and read back. Streams are compared byte by byte.
#include <kel/reader.h>
#include <kel/savedline.h>
#include <kel/usecounter.h>
#include <kel/writer.h>

#include "support/persistable.h"
#include "support/problem.h"
#include "support/streams.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace
{
/// Holds one of everything that a stream can hold.
class Everything : public Bulletin, public Persistable
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }

    void write(Writer& writer) override
    {
        writer.write(flag).write(letter).write(small).write(big).write(real).write(single);
        writer.getOut() << own << Writer::s_separator;
        writer.write<Ztring>(text);
        writer.write(static_cast<unsigned>(block.size()), block.data());
        named.write(writer);
        anonymous.write(writer);
        anonymous.write(writer);
        uses.write(writer);
        writer.writeObj(dynamic_cast<Serializable*>(reference));
        writer.writeBulletins(board);
        writer.writeBulletins(list);
        writer.getOut() << rest;
    }

    void read(Reader& reader) override
    {
        reader.read(flag).read(letter).read(small).read(big).read(real).read(single);
        reader.getIn() >> own;
        reader.checkValid();
        reader.read<Ztring>(text);
        unsigned size = 0;
        char* bytes = nullptr;
        reader.read(size, bytes);
        block.assign(std::unique_ptr<char[]>(bytes).get(), size);
        named.read(reader);
        anonymous.read(reader);
        BulletinKey again;
        again.read(reader);
        EXPECT_EQ(again, anonymous);
        uses.read(reader);
        reader.read(reference);
        reader.readBulletins(board);
        reader.readBulletins(list);
        setKey(BulletinKey());
        reader.saveLine(getKey());
    }

    bool fixup(Reader& reader) override
    {
        reader.fix(reference);
        reader.fixBulletins(board);
        reader.fixBulletins(list);
        const SavedLine::LineReader line(reader, getKey());
        std::getline(reader.getIn(), rest);
        return true;
    }

    static inline CreatorOf<Everything> s_creator{"Everything"};

    bool flag = false;
    char letter = 0;
    short small = 0;
    std::int64_t big = 0;
    double real = 0;
    float single = 0;
    int own = 0;
    Ztring text;
    std::string block;
    BulletinKey named{"Nothing"};
    BulletinKey anonymous;
    UseCounter uses;
    Bulletin* reference = nullptr;
    BulletinBoard board;
    OrderedBulletins list{BulletinKey()};
    std::string rest;

private:
    void disown() override { board.clear(); }
};

/// Runs the work on a thread with a stack of 256 KiB.
void runOnSmallStack(std::function<void()> work)
{
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t(256) * 1024), 0);
    pthread_t thread;
    const auto run = [](void* argument) -> void*
    {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}
} // namespace

class ObjectStreamTest : public testing::Test
{
protected:
    PersistableGuard m_guard;
    TestStatus m_status;
};

TEST_F(ObjectStreamTest, WholeStreamIsHeaderVersionsAndRecords)
{
    Node first("a");
    Node second("b");
    second.x = 1.5;
    first.first = &second;
    second.second = &first;
    const BulletinKey key("key");
    first.setKey(key);
    std::ostringstream out;
    Writer(out, "Test 1.0", false).writeObj(&first);
    EXPECT_EQ(out.str(), getPreamble("Test 1.0") + "0 4 Node 3 key 0 0 0 1 a 2 0 \n"
                                                   "1 0  0 1.5 0 0 1 b 0 1 \n");
}

TEST_F(ObjectStreamTest, EveryItemOfTheFormatIsWrittenAndReadBack)
{
    Node leaf("leaf");
    Everything object;
    object.flag = true;
    object.letter = 'x';
    object.small = -7;
    object.big = std::numeric_limits<std::int64_t>::min();
    object.real = 0.1;
    object.single = 1e6F;
    object.own = 42;
    object.text.fromUtf8("caf\xc3\xa9 au\nlait");
    object.block = std::string("\0\n \xff", 4);
    object.named = BulletinKey("A name");
    for (int i = 0; i < 3; ++i)
        object.uses.incrementUse();
    object.reference = &leaf;
    object.board.add(&leaf);
    object.list.append(&leaf);
    object.list.append(&object);
    object.rest = "rest of the line";
    const std::string written = write(&object);
    object.board.clear();
    EXPECT_EQ(written, "0 10 Everything 1 120 -7 -9223372036854775808 0.1 1e+06 42 13 caf\xc3\xa9 au\nlait 4 " +
                           std::string("\0\n \xff", 4) +
                           " 6 A name 0  0 0  0 3 2 1 2 2 2 1 rest of the line\n"
                           "0 4 Node 0  1 0 0 0 4 leaf 0 0 \n");

    auto* const read = ::read<Everything>(written);
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->flag);
    EXPECT_EQ(read->letter, 'x');
    EXPECT_EQ(read->small, -7);
    EXPECT_EQ(read->big, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(read->real, 0.1);
    EXPECT_EQ(read->single, 1e6F);
    EXPECT_EQ(read->own, 42);
    EXPECT_EQ(read->text, object.text);
    EXPECT_EQ(read->block, object.block);
    EXPECT_EQ(read->named, object.named);
    EXPECT_NE(read->anonymous, object.anonymous);
    EXPECT_EQ(read->uses.getCount(), 3u);
    EXPECT_EQ(dynamic_cast<Node&>(*read->reference).name, "leaf");
    EXPECT_EQ(read->board.getPtr(read->reference->getKey()), read->reference);
    ASSERT_EQ(read->list.size(), 2u);
    EXPECT_EQ(read->list[0], read->reference);
    EXPECT_EQ(read->list[1], read);
    EXPECT_EQ(read->rest, " rest of the line");
}

TEST_F(ObjectStreamTest, CycleComesBackAsACycle)
{
    Node first("first");
    Node second("second");
    first.first = &second;
    second.first = &first;
    auto* const read = ::read<Node>(write(&first));
    EXPECT_EQ(read->name, "first");
    EXPECT_EQ(read->getFirst()->name, "second");
    EXPECT_EQ(read->getFirst()->getFirst(), read);
}

TEST_F(ObjectStreamTest, ReferenceToItselfComesBack)
{
    Node node("self");
    node.first = &node;
    node.second = &node;
    auto* const read = ::read<Node>(write(&node));
    EXPECT_EQ(read->first, read);
    EXPECT_EQ(read->second, read);
    EXPECT_EQ(Persistable::getCount(), 2u);
}

TEST_F(ObjectStreamTest, SharedObjectComesBackOnce)
{
    Node shared("shared");
    Node left("left");
    Node right("right");
    Node root("root");
    root.first = &left;
    root.second = &right;
    left.first = right.first = &shared;
    auto* const read = ::read<Node>(write(&root));
    EXPECT_EQ(read->getFirst()->first, read->getSecond()->first);
    EXPECT_EQ(read->getFirst()->getFirst()->name, "shared");
    EXPECT_EQ(Persistable::getCount(), 8u);
}

TEST_F(ObjectStreamTest, AnonymousKeysAreEqualWhereTheyWereAndFreshOtherwise)
{
    Node first;
    Node second;
    Node third;
    second.setKey(first.getKey());
    first.first = &second;
    second.first = &third;
    auto* const read = ::read<Node>(write(&first));
    EXPECT_EQ(read->getFirst()->getKey(), read->getKey());
    EXPECT_NE(read->getFirst()->getFirst()->getKey(), read->getKey());
    EXPECT_NE(read->getKey(), first.getKey());
}

TEST_F(ObjectStreamTest, DocumentComesBackWithItsMembersInOrder)
{
    Document document;
    for (const char* const name : {"a", "b", "c"})
        document.add(new Node(name));
    document.add(new Bulletin());
    auto* const read = ::read<Document>(write(&document));
    std::string names;
    for (const auto& [number, bulletin] : *read)
        names += dynamic_cast<Node&>(*bulletin).name.toUtf8();
    EXPECT_EQ(names, "abc");
}

TEST_F(ObjectStreamTest, BoardsWithinBoardsComeBack)
{
    Document outer;
    auto* const inner = new Document();
    inner->add(new Node("inner"));
    outer.add(inner);
    auto* const read = ::read<Document>(write(&outer));
    const auto& readInner = dynamic_cast<Document&>(*(*read->begin()).second);
    EXPECT_EQ(dynamic_cast<Node&>(*(*readInner.begin()).second).name, "inner");
}

TEST_F(ObjectStreamTest, WritingWhatWasReadGivesTheSameStream)
{
    std::mt19937 random(3);
    Document document;
    std::vector<Node*> nodes;
    for (int i = 0; i < 200; ++i)
    {
        nodes.push_back(new Node("node " + std::to_string(i)));
        document.add(nodes.back());
        nodes.back()->x = static_cast<double>(random()) / 1000;
        nodes.back()->first = nodes[random() % nodes.size()];
        nodes.back()->second = random() % 2 == 0 ? nullptr : nodes[random() % nodes.size()];
    }
    const std::string written = write(&document);
    EXPECT_EQ(write(::read<Document>(written)), written);
}

TEST_F(ObjectStreamTest, RealNumbersComeBackToTheLastBitAtFullPrecision)
{
    std::mt19937_64 random(4);
    for (int i = 0; i < 2000; ++i)
    {
        Node node;
        const auto number = std::bit_cast<double>(random());
        node.x = std::isfinite(number) ? number : 0;
        std::ostringstream out;
        out.precision(std::numeric_limits<double>::max_digits10);
        Writer(out, "Test", false).writeObj(&node);
        std::istringstream in(out.str());
        Reader reader(in, "Test", false);
        const std::unique_ptr<Serializable> read(reader.perform());
        ASSERT_EQ(std::bit_cast<std::uint64_t>(dynamic_cast<Node&>(*read).x), std::bit_cast<std::uint64_t>(node.x));
    }
}

TEST_F(ObjectStreamTest, TextsComeBackUpToAZeroByte)
{
    for (const std::string& text : {std::string("a b\n\tc"), std::string(100000, 'x'), std::string("1 2 3 "),
                                    std::string("\xf0\x9f\x98\x80"), std::string()})
    {
        Node node(text);
        EXPECT_EQ(::read<Node>(write(&node))->name.toUtf8(), text);
    }
}

TEST_F(ObjectStreamTest, ListOfAMillionObjectsNeedsNoStack)
{
    constexpr int count = 1000000;
    std::string stream;
    Node* root = nullptr;
    for (int i = 0; i < count; ++i)
    {
        auto* const node = new Node();
        node->setKey(BulletinKey("same"));
        node->first = root;
        root = node;
    }
    runOnSmallStack([&] { stream = write(root); });
    Persistable::deleteAll();
    Node* read = nullptr;
    runOnSmallStack([&] { read = ::read<Node>(stream); });
    int length = 0;
    for (const Node* node = read; node; node = node->getFirst())
        ++length;
    EXPECT_EQ(length, count);
}

TEST_F(ObjectStreamTest, ManyUnknownObjectsAreSkipped)
{
    std::string records = "0 8 NodeList 1 30d41 \n0 7 Unknown 1 2 3 \n";
    for (int i = 0; i < 199998; ++i)
        records += "2 4 5 6 \n";
    records += "0 4 Node 0  0 0 0 0 0  0 0 \n";
    auto* const read = ::read<NodeList>(records);
    EXPECT_EQ(read->size(), 1u);
}
