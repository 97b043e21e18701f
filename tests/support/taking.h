// SPDX-License-Identifier: MIT
// A class that uses every item of the object stream.
#pragma once

#include <kel/array.h>
#include <kel/bulletin.h>
#include <kel/nativereader.h>
#include <kel/orderedbulletins.h>
#include <kel/reader.h>
#include <kel/savedline.h>
#include <kel/writer.h>
#include <kel/ztring.h>

#include "persistablebase.h"

#include <memory>
#include <string>

/// Has one of every item. Its numbers are the rest of its line, which waits for the fixing.
class Taking : public Bulletin, public Persistable
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }

    void write(Writer& writer) override
    {
        writer.write(number).write(real).write<Ztring>(text);
        writer.write(static_cast<unsigned>(block.size()), block.data());
        anonymous.write(writer);
        named.write(writer);
        writer.writeObj(dynamic_cast<Serializable*>(reference));
        writer.writeBulletins(list);
        writer.write(references.size());
        for (Bulletin* const element : references)
            writer.writeObj(dynamic_cast<Serializable*>(element));
        writer.write(numbers.size());
        for (const unsigned element : numbers)
            writer.write(element);
    }

    void read(Reader& reader) override
    {
        reader.read(number).read(real).read(text);
        unsigned size = 0;
        char* bytes = nullptr;
        reader.read(size, bytes);
        block.assign(std::unique_ptr<char[]>(bytes).get(), size);
        anonymous.read(reader);
        named.read(reader);
        reader.read(reference);
        reader.readBulletins(list);
        reader.read(references, NativeReader());
        reader.saveLine(getKey());
    }

    bool fixup(Reader& reader) override
    {
        reader.fix(reference);
        reader.fixBulletins(list);
        for (Bulletin*& element : references)
            reader.fix(element);
        const SavedLine::LineReader line(reader, getKey());
        reader.read(numbers, readNumber);
        return true;
    }

    static void readNumber(Reader& reader, unsigned& element) { reader.read(element); }

    static inline CreatorOf<Taking> s_creator{"Taking"};

    unsigned number = 0;
    double real = 0;
    Ztring text;
    std::string block;
    BulletinKey anonymous;
    BulletinKey named;
    Bulletin* reference = nullptr;
    OrderedBulletins list{BulletinKey()};
    Array<Bulletin*> references;
    Array<unsigned> numbers;
};
