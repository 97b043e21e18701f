// SPDX-License-Identifier: MIT
// Classes that use every item of the object stream.
#pragma once

#include <kel/array.h>
#include <kel/bulletinboard.h>
#include <kel/nativereader.h>
#include <kel/orderedbulletins.h>
#include <kel/reader.h>
#include <kel/savedline.h>
#include <kel/usecounter.h>
#include <kel/version.h>
#include <kel/writer.h>
#include <kel/ztring.h>

#include "description.h"
#include "support/persistablebase.h"

#include <memory>
#include <string>
#include <tuple>
#include <type_traits>

/// An object that can tell its data.
class Described : public Persistable
{
public:
    virtual void describe(Description& description) const = 0;
    /// Null for an object that is no bulletin.
    virtual const Bulletin* getBulletin() const { return nullptr; }
};

/// A number, be it a character's code.
template <class T>
auto toNumber(T value)
{
    if constexpr (std::is_floating_point_v<T>)
        return value;
    else if constexpr (std::is_signed_v<T>)
        return static_cast<long long>(value);
    else
        return static_cast<unsigned long long>(value);
}

/// A number of every type.
class Numbers : public Bulletin, public Described
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }
    const Bulletin* getBulletin() const override { return this; }

    void write(Writer& writer) override
    {
        std::apply([&writer](const auto&... numbers) { (writer.write(numbers), ...); }, m_numbers);
        writer.writeHex(m_hex);
    }

    void read(Reader& reader) override
    {
        std::apply([&reader](auto&... numbers) { (reader.read(numbers), ...); }, m_numbers);
        reader.readHex(m_hex);
        reader.checkValid();
    }

    void describe(Description& description) const override
    {
        std::apply([&description](const auto&... numbers) { (description.add(toNumber(numbers)), ...); }, m_numbers);
        description.add(m_hex);
    }

    static inline CreatorOf<Numbers> s_creator{"Numbers"};

private:
    std::tuple<bool, char, signed char, unsigned char, wchar_t, char8_t, char16_t, char32_t, short, unsigned short, int,
               unsigned, long, unsigned long, long long, unsigned long long, float, double, long double>
        m_numbers{};
    unsigned m_hex = 0;
};

/// Texts, blocks, keys and references.
class Items : public Bulletin, public Described
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }
    const Bulletin* getBulletin() const override { return this; }

    void write(Writer& writer) override
    {
        getKey().write(writer);
        m_other.write(writer);
        writer.write<Ztring>(m_text).write(static_cast<unsigned>(m_block.size()), m_block.data());
        m_uses.write(writer);
        m_version.write(writer);
        writer.writeObj(dynamic_cast<Serializable*>(m_reference));
        writer.write(m_array.size());
        for (Bulletin* const element : m_array)
            writer.writeObj(dynamic_cast<Serializable*>(element));
    }

    void read(Reader& reader) override
    {
        BulletinKey key(getKey());
        key.read(reader);
        setKey(key);
        m_other.read(reader);
        reader.read(m_text);
        unsigned size = 0;
        char* bytes = nullptr;
        reader.read(size, bytes);
        const std::unique_ptr<char[]> owned(bytes);
        m_block.assign(bytes, size);
        m_uses.read(reader);
        m_version.read(reader);
        reader.read(m_reference);
        reader.read<Bulletin*, NativeReader>(m_array, NativeReader());
    }

    bool fixup(Reader& reader) override
    {
        reader.fix(m_reference);
        for (Bulletin*& element : m_array)
            reader.fix(element);
        return true;
    }

    void describe(Description& description) const override
    {
        description.add(getKey()).add(m_other).add(m_text).add(m_block).add(m_uses.getCount());
        description.add(m_version.getKey()).add(m_version.getMajor()).add(m_version.getMinor());
        description.add(m_version.getPatch()).addReference(m_reference).addList(m_array);
    }

    static inline CreatorOf<Items> s_creator{"Items"};

private:
    BulletinKey m_other;
    Ztring m_text;
    std::string m_block;
    UseCounter m_uses;
    Version m_version;
    Bulletin* m_reference = nullptr;
    Array<Bulletin*> m_array;
};

/// A board with its members.
class Group : public BulletinBoard, public Described
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }
    const Bulletin* getBulletin() const override { return this; }

    void write(Writer& writer) override
    {
        getKey().write(writer);
        writer.writeBulletins(*this);
    }

    void read(Reader& reader) override
    {
        BulletinKey key(getKey());
        key.read(reader);
        setKey(key);
        reader.readBulletins(*this);
    }

    bool fixup(Reader& reader) override
    {
        reader.fixBulletins(*this);
        return true;
    }

    void describe(Description& description) const override { description.add(getKey()).addSet(*this); }

    static inline CreatorOf<Group> s_creator{"Group"};

private:
    void disown() override { clear(); }
};

/// A list with its members.
class Sequence : public OrderedBulletins, public Described
{
public:
    Sequence() : OrderedBulletins(BulletinKey()) {}

    SerializableCreator* getCreator() override { return &s_creator; }
    const Bulletin* getBulletin() const override { return this; }
    void write(Writer& writer) override { writer.writeBulletins(*this); }
    void read(Reader& reader) override { reader.readBulletins(*this); }

    bool fixup(Reader& reader) override
    {
        reader.fixBulletins(*this);
        return true;
    }

    void describe(Description& description) const override { description.addList(*this); }

    static inline CreatorOf<Sequence> s_creator{"Sequence"};
};

/// Waits for another object, and reads part of its data only then. It gives itself up for one number.
class Late : public Bulletin, public Described
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }
    const Bulletin* getBulletin() const override { return this; }

    void write(Writer& writer) override
    {
        writer.write(m_number);
        writer.writeObj(dynamic_cast<Serializable*>(m_reference));
        writer.write<Ztring>(m_text).write(m_real);
    }

    void read(Reader& reader) override
    {
        reader.read(m_number);
        constexpr unsigned unwanted = 13;
        if (m_number == unwanted)
            throw Reader::Skip();
        reader.read(m_reference).saveLine(getKey());
    }

    bool fixup(Reader& reader) override
    {
        constexpr unsigned patience = 3;
        const bool isWaiting = m_reference && !reader.isLast() && reader.getPass() < patience;
        if (isWaiting && !reader.isFixed(m_reference))
            return false;
        const SavedLine::LineReader line(reader, getKey());
        reader.fix(m_reference).read(m_text).read(m_real);
        return true;
    }

    void describe(Description& description) const override
    {
        description.add(m_number).addReference(m_reference).add(m_text).add(m_real);
    }

    static inline CreatorOf<Late> s_creator{"Late"};

private:
    unsigned m_number = 0;
    Bulletin* m_reference = nullptr;
    Ztring m_text;
    double m_real = 0;
};

/// No bulletin: it can be the root, and nobody can refer to it.
class Bare : public Described
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }
    void describe(Description& description) const override { description.add("bare"); }

    static inline CreatorOf<Bare> s_creator{"Bare"};
};
