// SPDX-License-Identifier: MIT
// Classes that can be stored in an object stream.
#pragma once

#include <kel/bulletin.h>
#include <kel/bulletinboard.h>
#include <kel/orderedbulletins.h>
#include <kel/reader.h>
#include <kel/writer.h>
#include <kel/ztring.h>

#include "persistablebase.h"

#include <functional>
#include <string>

/// A point of a model: a key, three coordinates, a text and two references.
class Node : public Bulletin, public Persistable
{
public:
    Node() = default;
    explicit Node(const std::string& text) { name.fromUtf8(text); }

    SerializableCreator* getCreator() override { return &s_creator; }
    bool isWritable() override { return writable; }

    void write(Writer& writer) override
    {
        getKey().write(writer);
        writer.write(x).write(y).write(z).write(name);
        writer.writeObj(dynamic_cast<Serializable*>(first));
        writer.writeObj(dynamic_cast<Serializable*>(second));
    }

    void read(Reader& reader) override
    {
        BulletinKey key(getKey());
        key.read(reader);
        setKey(key);
        reader.read(x).read(y).read(z).read(name).read(first).read(second);
    }

    bool fixup(Reader& reader) override
    {
        reader.fix(first).fix(second);
        return true;
    }

    Node* getFirst() const { return dynamic_cast<Node*>(first); }
    Node* getSecond() const { return dynamic_cast<Node*>(second); }

    static inline CreatorOf<Node> s_creator{"Node"};

    double x = 0;
    double y = 0;
    double z = 0;
    Ztring name;
    Bulletin* first = nullptr;
    Bulletin* second = nullptr;
    bool writable = true;
};

/// A board that is stored with its members.
class Document : public BulletinBoard, public Persistable
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }
    void write(Writer& writer) override { writer.writeBulletins(*this); }
    void read(Reader& reader) override { reader.readBulletins(*this); }

    bool fixup(Reader& reader) override
    {
        reader.fixBulletins(*this);
        return true;
    }

    static inline CreatorOf<Document> s_creator{"Document"};

private:
    void disown() override { clear(); }
};

/// A list that is stored with its members and owns none of them.
class NodeList : public OrderedBulletins, public Persistable
{
public:
    NodeList() : OrderedBulletins(BulletinKey()) {}

    SerializableCreator* getCreator() override { return &s_creator; }
    void write(Writer& writer) override { writer.writeBulletins(*this); }
    void read(Reader& reader) override { reader.readBulletins(*this); }

    bool fixup(Reader& reader) override
    {
        reader.fixBulletins(*this);
        return true;
    }

    static inline CreatorOf<NodeList> s_creator{"NodeList"};
};

/// An object whose data are what the test makes them.
class Scripted : public Bulletin, public Persistable
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }

    void write(Writer& writer) override
    {
        if (onWrite)
            onWrite(writer);
    }

    void read(Reader& reader) override
    {
        if (onRead)
            onRead(*this, reader);
    }

    bool fixup(Reader& reader) override { return !onFixup || onFixup(*this, reader); }

    static inline CreatorOf<Scripted> s_creator{"Scripted"};

    std::function<void(Writer&)> onWrite;
    static inline std::function<void(Scripted&, Reader&)> onRead;
    static inline std::function<bool(Scripted&, Reader&)> onFixup;

    int number = 0;
    Bulletin* reference = nullptr;
};
