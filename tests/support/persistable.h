// SPDX-License-Identifier: MIT
// Classes that can be stored in an object stream.
#pragma once

#include <kel/bulletin.h>
#include <kel/bulletinboard.h>
#include <kel/orderedbulletins.h>
#include <kel/reader.h>
#include <kel/serializable.h>
#include <kel/serializablecreator.h>
#include <kel/writer.h>
#include <kel/ztring.h>

#include <cstddef>
#include <functional>
#include <string>

/// A creator of `T`s under any name.
template <class T>
class CreatorOf : public SerializableCreator
{
public:
    using SerializableCreator::SerializableCreator;
    Serializable* create() override { return new T(); }
};

/// Knows all objects of the classes below that are alive, so that a test can delete what a failed reading left behind.
class Persistable : public Serializable
{
public:
    Persistable() : m_next(s_first)
    {
        if (m_next)
            m_next->m_previous = this;
        s_first = this;
        ++s_count;
    }
    Persistable(const Persistable&) = delete;
    Persistable& operator=(const Persistable&) = delete;

    ~Persistable() override
    {
        (m_previous ? m_previous->m_next : s_first) = m_next;
        if (m_next)
            m_next->m_previous = m_previous;
        --s_count;
    }

    static std::size_t getCount() { return s_count; }

    static void deleteAll()
    {
        // Damaged input may have put one object on two boards.
        for (Persistable* object = s_first; object; object = object->m_next)
            object->disown();
        while (s_first)
            delete s_first;
    }

private:
    virtual void disown() {}

    static inline Persistable* s_first = nullptr;
    static inline std::size_t s_count = 0;

    Persistable* m_next;
    Persistable* m_previous = nullptr;
};

/// Deletes at the end of a test what it has made and read.
class PersistableGuard
{
public:
    PersistableGuard() = default;
    PersistableGuard(const PersistableGuard&) = delete;
    PersistableGuard& operator=(const PersistableGuard&) = delete;
    ~PersistableGuard() { Persistable::deleteAll(); }
};

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
