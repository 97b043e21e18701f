// SPDX-License-Identifier: MIT
// The worked example of docs/stream-format.md is what the library writes and reads.
#include <kel/reader.h>
#include <kel/serializable.h>
#include <kel/serializablecreator.h>
#include <kel/status.h>
#include <kel/writer.h>

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

namespace
{
/// The node that the document describes.
class Node : public Bulletin, public Serializable
{
public:
    SerializableCreator* getCreator() override;

    void write(Writer& writer) override
    {
        writer.write(name).write(x).write(y).write(z);
        writer.writeObj(dynamic_cast<Serializable*>(next));
    }

    void read(Reader& reader) override { reader.read(name).read(x).read(y).read(z).read(next); }

    bool fixup(Reader& reader) override
    {
        reader.fix(next);
        return true;
    }

    Ztring name;
    double x = 0;
    double y = 0;
    double z = 0;
    Bulletin* next = nullptr;
};

class NodeCreator : public SerializableCreator
{
public:
    NodeCreator() : SerializableCreator("Node") {}
    Serializable* create() override { return new Node(); }
};

NodeCreator s_creator;

SerializableCreator* Node::getCreator()
{
    return &s_creator;
}

/// The first block of code behind the heading, without its indentation.
std::string getExample(const std::string& heading)
{
    const std::string indentation(4, ' ');
    std::ifstream document(KEL_DOCS "/stream-format.md");
    std::string example;
    std::string line;
    while (std::getline(document, line) && line != heading)
    {
    }
    while (std::getline(document, line) && (example.empty() || line.starts_with(indentation)))
    {
        if (line.starts_with(indentation))
            example += line.substr(indentation.size()) + "\n";
    }
    return example;
}
} // namespace

TEST(StreamFormat, WorkedExampleIsWhatIsWritten)
{
    Node first;
    Node second;
    first.name = "a";
    first.next = &second;
    second.name = "b";
    second.x = 1.5;
    second.next = &first;
    std::ostringstream out;
    Writer(out, "Morvane Copyright (c) Pellwick 05 Mar 2012 14:07:09", false).writeObj(&first);
    EXPECT_EQ(getExample("## A worked example"), out.str());
}

TEST(StreamFormat, WorkedExampleIsReadAsTheTextSays)
{
    const Status status;
    std::istringstream in(getExample("## A worked example"));
    Reader reader(in, "Morvane", false);
    const std::unique_ptr<Node> root(dynamic_cast<Node*>(reader.perform()));
    const std::unique_ptr<Node> other(dynamic_cast<Node*>(root->next));
    EXPECT_EQ(root->name, "a");
    EXPECT_EQ(root->x, 0);
    EXPECT_EQ(other->name, "b");
    EXPECT_EQ(other->x, 1.5);
    EXPECT_EQ(other->y, 0);
    EXPECT_EQ(other->z, 0);
    EXPECT_EQ(other->next, root.get());
}
