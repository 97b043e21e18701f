// SPDX-License-Identifier: MIT
// Object streams. Whatever the bytes, reading ends in a root or in a Problem, takes memory in proportion to the bytes,
// and ends in the same way when they arrive one by one. What is read, written and read again is equal.
#include <kel/problem.h>
#include <kel/reader.h>
#include <kel/writer.h>

#include "support/fuzzing.h"
#include "support/memorypeak.h"
#include "support/model.h"
#include "support/streambuffers.h"
#include "support/streams.h"
#include "support/teststatus.h"

#include <sstream>
#include <string>
#include <vector>

namespace
{
using Objects = std::vector<const Described*>;

/// How the reading of a stream has ended.
struct Opened
{
    Serializable* root = nullptr;
    std::string message; // empty: there is a root
    Objects objects;     // in the order of their records
    std::size_t memory = 0;
};

Opened open(std::istream& in)
{
    Opened opened;
    const std::size_t before = Persistable::getCount();
    const memorypeak::Meter meter;
    try
    {
        Reader reader(in, "Test", true);
        opened.root = reader.perform();
        EXPECT_PROPERTY(opened.root);
    }
    catch (const Problem& problem)
    {
        opened.message = problem.getMessage().toUtf8();
        EXPECT_PROPERTY(!opened.message.empty());
    }
    opened.memory = meter.getPeak();
    const std::vector<Persistable*> all = Persistable::getAll();
    for (std::size_t i = before; i < all.size(); ++i)
        opened.objects.push_back(dynamic_cast<const Described*>(all[i]));
    return opened;
}

Opened open(const std::string& stream)
{
    std::istringstream in(stream);
    return open(in);
}

std::string describe(const Objects& objects)
{
    Description description;
    for (const Described* const object : objects)
        description.enter(object->getBulletin());
    for (const Described* const object : objects)
        object->describe(description);
    return description.getText();
}

/// A record takes at least four bytes, and an object some hundreds. What grows now and then with the process, such as
/// the table of the named keys, grows only once for a stream.
void expectBounded(const std::string& stream, const Opened& opened)
{
    const std::size_t bound = 65536 + 1000 * stream.size();
    EXPECT_PROPERTY(opened.memory < bound || open(stream).memory < bound);
}

void expectSameWhenDripping(const std::string& stream, const Opened& opened)
{
    DrippingBuffer buffer(stream);
    std::istream in(&buffer);
    const Opened dripped = open(in);
    EXPECT_PROPERTY(dripped.message == opened.message);
    EXPECT_PROPERTY(dripped.objects.size() == opened.objects.size());
    EXPECT_PROPERTY(!opened.root || describe(dripped.objects) == describe(opened.objects));
}

/// The objects that were written, in the order of their records.
Objects getWritten(Writer& writer, const Objects& objects, std::size_t count)
{
    Objects written(count);
    for (const Described* const object : objects)
    {
        const unsigned id = writer.getId(const_cast<Serializable*>(static_cast<const Serializable*>(object)));
        if (id <= count)
            written[id - 1] = object;
    }
    return written;
}

void expectRoundTrip(const Opened& opened)
{
    std::ostringstream out;
    Writer writer(out, "Test", true);
    writer.writeObj(opened.root);

    SmallBuffer buffer(5);
    std::ostream small(&buffer);
    Writer(small, "Test", false).writeObj(opened.root);
    EXPECT_PROPERTY(buffer.getBytes() == out.str());

    const Opened again = open(out.str());
    EXPECT_PROPERTY(again.message.empty());
    const Objects written = getWritten(writer, opened.objects, again.objects.size());
    for (const Described* const object : written)
        EXPECT_PROPERTY(object);
    EXPECT_PROPERTY(describe(again.objects) == describe(written));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static TestStatus status;
    Input input(data, size);
    // The input is all of the stream, or what stands behind a proper head.
    const std::string head = input.takeByte() == 'H' ? "" : getPreamble();
    const std::string stream = head + input.takeRest();
    const Opened opened = open(stream);
    expectBounded(stream, opened);
    expectSameWhenDripping(stream, opened);
    if (opened.root)
        expectRoundTrip(opened);
    Persistable::deleteAll();
    EXPECT_PROPERTY(Persistable::getCount() == 0);
    return 0;
}
