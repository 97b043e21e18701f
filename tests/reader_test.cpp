// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/reader.h>

#include <kel/interrupted.h>
#include <kel/nativereader.h>
#include <kel/savedline.h>
#include <kel/versions.h>

#include "support/persistable.h"
#include "support/problem.h"
#include "support/recorder.h"
#include "support/streambuffers.h"
#include "support/streams.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <iomanip>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace
{
/// What reading one number leaves behind.
template <class T>
struct Outcome
{
    T value;
    std::ios::iostate state;
    std::streamoff position;

    bool operator==(const Outcome&) const = default;
};

template <class T>
std::ostream& operator<<(std::ostream& out, const Outcome<T>& outcome)
{
    return out << std::setprecision(17) << outcome.value << " in state " << outcome.state << " at " << outcome.position;
}

template <class T>
Outcome<T> getOutcome(std::istream& in, T value)
{
    const std::ios::iostate state = in.rdstate();
    in.clear();
    return {value, state, in.tellg()};
}

/// Is stored, but no reference can lead to it.
class NoBulletin : public Persistable
{
public:
    static inline CreatorOf<NoBulletin> s_creator{"NoBulletin"};
};

/// A class whose objects refuse to be made.
class RefusingCreator : public SerializableCreator
{
public:
    using SerializableCreator::SerializableCreator;
    Serializable* create() override { throw Reader::Skip(); }
};

RefusingCreator refusingCreator("Refusing");

/// A board that is observed while it is filled.
class ObservedDocument : public Document
{
public:
    bool fixup(Reader& reader) override
    {
        s_recorder->observe(*this);
        return Document::fixup(reader);
    }

    static inline CreatorOf<ObservedDocument> s_creator{"ObservedDocument"};
    static inline Recorder* s_recorder = nullptr;
};

/// A list whose objects live one after the other at the same address. The first skips itself when it is read.
class InOnePlace : public NodeList
{
public:
    void read(Reader& reader) override
    {
        NodeList::read(reader);
        if (s_isFirst)
        {
            s_isFirst = false;
            throw Reader::Skip();
        }
    }

    static void* operator new(std::size_t) { return s_place; }
    static void operator delete(void*) {}

    static inline CreatorOf<InOnePlace> s_creator{"InOnePlace"};
    static inline bool s_isFirst = true;

private:
    alignas(std::max_align_t) static std::byte s_place[256];
};

alignas(std::max_align_t) std::byte InOnePlace::s_place[256];
static_assert(sizeof(InOnePlace) <= 256);

/// A scripted object reads one reference and fixes it unless the test says otherwise.
void readReference(Scripted& object, Reader& reader)
{
    reader.read(object.number).read(object.reference);
}

bool fixReference(Scripted& object, Reader& reader)
{
    reader.fix(object.reference);
    return true;
}

std::uintptr_t toId(const void* slot)
{
    return reinterpret_cast<std::uintptr_t>(slot);
}

void* toSlot(std::uintptr_t id)
{
    return reinterpret_cast<void*>(id);
}
} // namespace

class ReaderTest : public testing::Test
{
protected:
    ~ReaderTest() override
    {
        Scripted::onRead = nullptr;
        Scripted::onFixup = nullptr;
    }

    /// A reader that stands after the version table, before this text.
    Reader& open(const std::string& text)
    {
        m_in.clear();
        m_in.str(getPreamble() + text);
        return m_reader.emplace(m_in, "Test", false);
    }

    /// A reader whose input is this text and nothing before it.
    Reader& openBare(const std::string& text)
    {
        open("");
        m_bare.clear();
        m_bare.str(text);
        m_reader->set(&m_bare);
        return *m_reader;
    }

    Serializable* perform(const std::string& records) { return open(records).perform(); }

    Scripted* performScripted(const std::string& records) { return dynamic_cast<Scripted*>(perform(records)); }

    /// Reads one number from the text both ways.
    template <class T>
    void expectFormattedExtraction(const std::string& text, std::ios::fmtflags flags = std::ios::dec | std::ios::skipws)
    {
        T value = 77;
        Reader& reader = openBare(text);
        m_bare.flags(flags);
        try
        {
            reader.read(value);
        }
        catch (const Problem&)
        {
        }
        T expected = 77;
        std::istringstream in(text);
        in.flags(flags);
        in >> expected;
        ASSERT_EQ(getOutcome(m_bare, value), getOutcome(in, expected)) << '"' << text << '"';
    }

    void expectFormattedHexExtraction(const std::string& text,
                                      std::ios::fmtflags flags = std::ios::dec | std::ios::skipws)
    {
        unsigned value = 77;
        openBare(text);
        m_bare.flags(flags);
        m_reader->readHex(value);
        unsigned expected = 77;
        std::istringstream in(text);
        in.flags(flags);
        in >> std::hex >> expected >> std::dec;
        ASSERT_EQ(m_bare.flags(), in.flags());
        ASSERT_EQ(getOutcome(m_bare, value), getOutcome(in, expected)) << '"' << text << '"';
    }

    template <class T>
    T readBare(const std::string& text)
    {
        T value{};
        openBare(text).read(value);
        return value;
    }

    PersistableGuard m_guard;
    std::optional<TestStatus> m_status{std::in_place};
    std::istringstream m_in;
    std::istringstream m_bare;
    std::optional<Reader> m_reader;
};

// The beginning of a stream

TEST_F(ReaderTest, AcceptsAHeaderThatHoldsTheExpectedText)
{
    std::istringstream in(getPreamble("The Test of it"));
    EXPECT_NO_THROW(Reader(in, "Test", false));
}

TEST_F(ReaderTest, AcceptsAHeaderThatHoldsTheMagicWord)
{
    std::istringstream in(getPreamble("Another (Velkor) product"));
    EXPECT_NO_THROW(Reader(in, "Test", false));
}

TEST_F(ReaderTest, AcceptsAnyHeaderWhenNothingIsExpected)
{
    std::istringstream in(getPreamble("Another"));
    EXPECT_NO_THROW(Reader(in, "", false));
}

TEST_F(ReaderTest, ComparesTheHeaderInUtf8)
{
    Ztring expected;
    expected.fromUtf8("\xc3\xa9");
    std::istringstream in(getPreamble("caf\xc3\xa9"));
    EXPECT_NO_THROW(Reader(in, expected, false));
}

TEST_F(ReaderTest, RefusesAnotherHeaderAndNamesWhatItExpects)
{
    std::istringstream in(getPreamble("test velkor"));
    EXPECT_PROBLEM(Reader(in, "Test", false), "Expecting: Test");
}

TEST_F(ReaderTest, RefusesAStreamThatHasFailed)
{
    std::istringstream in(getPreamble());
    in.setstate(std::ios::failbit);
    EXPECT_ASSERTION(Reader(in, "Test", false), "*m_in");
    in.clear(std::ios::badbit);
    EXPECT_ASSERTION(Reader(in, "Test", false), "*m_in");
}

TEST_F(ReaderTest, ReportsAnEmptyStreamAsInvalid)
{
    std::istringstream in;
    EXPECT_PROBLEM(Reader(in, "Test", false), "Invalid stream");
}

TEST_F(ReaderTest, TurnsWhiteSpaceSkippingOn)
{
    std::istringstream in(getPreamble());
    in >> std::noskipws;
    EXPECT_NO_THROW(Reader(in, "Test", false));
    EXPECT_TRUE(in.flags() & std::ios::skipws);
}

TEST_F(ReaderTest, ReadsNumbersInTheClassicLocale)
{
    const ForeignLocale foreign;
    std::istringstream in(getPreamble() + "1234567 1.5 x");
    Reader reader(in, "Test", false);
    int whole = 0;
    double real = 0;
    in >> whole >> real;
    EXPECT_EQ(whole, 1234567);
    EXPECT_EQ(real, 1.5);
}

TEST_F(ReaderTest, KeepsTheVersionTableOfTheStreamOnItsBoard)
{
    const Versions* const versions = open("").getPtr<Versions>();
    ASSERT_TRUE(versions);
    EXPECT_NE(versions, &Versions::getSingleton());
    EXPECT_EQ(versions->size(), 2u);
}

// The root

TEST_F(ReaderTest, ReturnsTheRoot)
{
    auto* const root = dynamic_cast<Node*>(perform("0 4 Node 3 key 1 2 3 4 name 0 0 \n"));
    ASSERT_TRUE(root);
    EXPECT_EQ(root->name, "name");
    EXPECT_EQ(root->getKey(), BulletinKey("key"));
    EXPECT_EQ(root->z, 3);
}

TEST_F(ReaderTest, FailsWithoutARoot)
{
    EXPECT_PROBLEM(perform(""), "No root");
    EXPECT_PROBLEM(perform(" \n "), "No root");
    EXPECT_PROBLEM(perform("x"), "No root");
    EXPECT_PROBLEM(perform("0"), "No root");
}

TEST_F(ReaderTest, FailsWithARootOfAnUnknownClass)
{
    EXPECT_PROBLEM(perform("0 7 Unknown 1 2 3\n0 4 Node 0  0 0 0 0 0  0 0 \n"), "No root");
}

TEST_F(ReaderTest, FailsWithARootThatSkipsItself)
{
    Scripted::onRead = [](Scripted&, Reader&) { throw Reader::Skip(); };
    EXPECT_PROBLEM(perform("0 8 Scripted 1 2\n"), "No root");
}

TEST_F(ReaderTest, ReadsARootThatEndsWithTheStream)
{
    Scripted::onRead = nullptr;
    EXPECT_TRUE(perform("0 8 Scripted "));
}

TEST_F(ReaderTest, EndsQuietlyAfterTheLastLineFeed)
{
    EXPECT_TRUE(perform("0 8 Scripted \n1 \n"));
    EXPECT_EQ(Persistable::getCount(), 2u);
    EXPECT_TRUE(m_in.eof());
}

TEST_F(ReaderTest, ReadsRecordsThatAreNotSeparatedByLineFeeds)
{
    Scripted::onRead = readReference;
    Scripted::onFixup = fixReference;
    Scripted* const root = performScripted("0 8 Scripted 7 2 1 8 0 ");
    EXPECT_EQ(root->number, 7);
    EXPECT_EQ(dynamic_cast<Scripted*>(root->reference)->number, 8);
}

// References

TEST_F(ReaderTest, ReferencesAreHeldAsIdsUntilTheyAreFixed)
{
    std::vector<std::uintptr_t> held;
    Scripted::onRead = [&held](Scripted& object, Reader& reader)
    {
        readReference(object, reader);
        held.push_back(toId(object.reference));
    };
    Scripted::onFixup = fixReference;
    Scripted* const root = performScripted("0 8 Scripted 1 2 \n1 2 1 \n");
    EXPECT_EQ(held, (std::vector<std::uintptr_t>{2, 1}));
    EXPECT_EQ(dynamic_cast<Scripted*>(root->reference)->number, 2);
    EXPECT_EQ(dynamic_cast<Scripted*>(root->reference)->reference, root);
}

TEST_F(ReaderTest, ReferencesAreHexadecimalInAnyCaseAndUpTo64Bits)
{
    const auto readId = [this](const std::string& text)
    {
        Bulletin* slot = nullptr;
        openBare(text).read(slot);
        return toId(slot);
    };
    EXPECT_EQ(readId("1f "), 0x1fu);
    EXPECT_EQ(readId(" 1F "), 0x1fu);
    EXPECT_EQ(readId("0x1f "), 0x1fu);
    EXPECT_EQ(readId("100000000 "), 0x100000000u);
    EXPECT_EQ(readId("ffffffffffffffff "), 0xffffffffffffffffu);
    EXPECT_PROBLEM(readId("10000000000000000 "), "Invalid stream");
    EXPECT_PROBLEM(readId("g "), "Invalid stream");
    EXPECT_PROBLEM(readId("1"), "Premature end of file");
}

TEST_F(ReaderTest, NumbersAfterAReferenceAreDecimal)
{
    Bulletin* slot = nullptr;
    int number = 0;
    openBare("0xa 10 \n").read(slot).read(number);
    EXPECT_EQ(number, 10);
    openBare("a 10 \n").read(slot).read(number);
    EXPECT_EQ(number, 10);
}

TEST_F(ReaderTest, FixingNullLeavesNull)
{
    Bulletin* slot = nullptr;
    Reader& reader = open("");
    EXPECT_EQ(&reader.fix(slot), &reader);
    EXPECT_EQ(slot, nullptr);
}

TEST_F(ReaderTest, FixingAnUnknownIdNamesItInDecimal)
{
    Scripted::onRead = readReference;
    Scripted::onFixup = fixReference;
    EXPECT_PROBLEM(perform("0 8 Scripted 0 ff \n"), "Unknown ptr: 255");
    EXPECT_PROBLEM(perform("0 8 Scripted 0 2 \n"), "Unknown ptr: 2");
    EXPECT_PROBLEM(perform("0 8 Scripted 0 100000001 \n"), "Unknown ptr: 4294967297");
    EXPECT_PROBLEM(perform("0 8 Scripted 0 ffffffffffffffff \n"), "Unknown ptr: 18446744073709551615");
}

TEST_F(ReaderTest, FixingAnObjectThatIsNoBulletinFails)
{
    Scripted::onRead = readReference;
    Scripted::onFixup = fixReference;
    EXPECT_PROBLEM(perform("0 8 Scripted 0 2 \n0 10 NoBulletin \n"), "Invalid ptr fix");
}

TEST_F(ReaderTest, FixingAgainAfterPerformKnowsNoIds)
{
    Scripted::onRead = nullptr;
    perform("0 8 Scripted \n");
    Bulletin* slot = static_cast<Bulletin*>(toSlot(1));
    EXPECT_PROBLEM(m_reader->fix(slot), "Unknown ptr: 1");
    EXPECT_ASSERTION(m_reader->isFixed(toSlot(1)), "findIt != m_restored.end()");
}

// Unknown classes and skipped objects

TEST_F(ReaderTest, SkipsObjectsOfAnUnknownClassAndMakesReferencesToThemNull)
{
    Scripted::onRead = readReference;
    Scripted::onFixup = fixReference;
    Scripted* const root = performScripted("0 8 Scripted 1 2 \n"
                                           "0 7 Unknown 99 4 text 88 3 \n"
                                           "2 77 \n"
                                           "1 4 5 \n"
                                           "1 5 3 \n");
    EXPECT_EQ(root->reference, nullptr);
    EXPECT_EQ(Persistable::getCount(), 3u);
}

TEST_F(ReaderTest, ReferencesBeyondSkippedObjectsKeepTheirIds)
{
    Scripted::onRead = readReference;
    Scripted::onFixup = fixReference;
    Scripted* const root = performScripted("0 8 Scripted 1 3 \n0 7 Unknown 5 \n1 7 0 \n");
    ASSERT_TRUE(root->reference);
    EXPECT_EQ(dynamic_cast<Scripted*>(root->reference)->number, 7);
}

TEST_F(ReaderTest, ObjectThatSkipsItselfIsDeletedAndNotFixed)
{
    std::vector<int> fixed;
    Scripted::onRead = [](Scripted& object, Reader& reader)
    {
        readReference(object, reader);
        if (object.number == 2)
            throw Reader::Skip();
    };
    Scripted::onFixup = [&fixed](Scripted& object, Reader& reader)
    {
        fixed.push_back(object.number);
        return fixReference(object, reader);
    };
    Scripted* const root = performScripted("0 8 Scripted 1 2 \n1 2 1 rest of the line\n1 3 2 \n");
    EXPECT_EQ(Persistable::getCount(), 2u);
    EXPECT_EQ(root->reference, nullptr);
    EXPECT_EQ(fixed, (std::vector<int>{3, 1}));
}

TEST_F(ReaderTest, ObserversHearOfTheDeletionOfABulletinThatSkipsItself)
{
    Recorder recorder;
    Scripted::onRead = [&](Scripted& object, Reader& reader)
    {
        readReference(object, reader);
        if (object.number != 2)
            return;
        recorder.observe(object);
        throw Reader::Skip();
    };
    performScripted("0 8 Scripted 1 0 \n1 2 0 \n");
    EXPECT_EQ(recorder.operations(), std::vector<std::string>{"deleted"});
}

TEST_F(ReaderTest, NeedsNoStatusForTheRootAloneButForWhatFollows)
{
    m_status.reset();
    Scripted::onRead = [](Scripted&, Reader& reader)
    {
        std::string line;
        std::getline(reader.getIn(), line);
    };
    EXPECT_NE(performScripted("0 8 Scripted "), nullptr);
    EXPECT_ASSERTION(perform("0 8 Scripted \n"), "valid(s_singleton)");
}

TEST_F(ReaderTest, CollectionOfAnObjectThatSkipsItselfIsForgotten)
{
    InOnePlace::s_isFirst = true;
    auto* const root = dynamic_cast<NodeList*>(perform("0 8 NodeList 2 2 3 \n0 10 InOnePlace 1 1 \n2 2 3 1 \n"));
    ASSERT_EQ(root->size(), 1u);
    const auto& second = dynamic_cast<const NodeList&>(*(*root)[0]);
    ASSERT_EQ(second.size(), 2u);
    EXPECT_EQ(second[0], &second);
    EXPECT_EQ(second[1], root);
}

TEST_F(ReaderTest, SkipWhileAnObjectIsMadeSkipsItsLine)
{
    Scripted::onRead = readReference;
    Scripted::onFixup = fixReference;
    Scripted* const root = performScripted("0 8 Scripted 1 2 \n0 8 Refusing 5 \n1 1 1 \n");
    EXPECT_EQ(root->reference, nullptr);
    EXPECT_EQ(Persistable::getCount(), 2u);
}

TEST_F(ReaderTest, OtherExceptionsOfAnObjectPassThroughAndNothingIsDeleted)
{
    Scripted::onRead = [](Scripted& object, Reader& reader)
    {
        readReference(object, reader);
        if (object.number == 2)
            reader.throwError("cannot");
    };
    EXPECT_PROBLEM(perform("0 8 Scripted 1 2 \n1 2 1 \n1 3 2 \n"), "cannot");
    EXPECT_EQ(Persistable::getCount(), 2u);
}

TEST_F(ReaderTest, ClassNumberThatWasNotGivenFails)
{
    EXPECT_ASSERTION(perform("1 \n"), "m_creators->size() >= classId");
    EXPECT_ASSERTION(perform("0 8 Scripted \n2 \n"), "m_creators->size() >= classId");
}

TEST_F(ReaderTest, GetCreatorThrowsSkipForAnUnknownClassEachTime)
{
    Reader& reader = openBare("4 Node 7 Unknown \n");
    EXPECT_EQ(reader.getCreator(0), &Node::s_creator);
    EXPECT_THROW(reader.getCreator(0), Reader::Skip);
    EXPECT_THROW(reader.getCreator(2), Reader::Skip);
    EXPECT_EQ(reader.getCreator(1), &Node::s_creator);
}

TEST_F(ReaderTest, LoadObjMakesAnObjectWaitForItsFixup)
{
    Scripted::onRead = nullptr;
    Reader& reader = openBare("0 8 Scripted \n");
    Reader::FixingQueue queue;
    Serializable* const object = reader.loadObj(queue, 1);
    ASSERT_EQ(queue.size(), 1u);
    EXPECT_EQ(queue.back().object, object);
    EXPECT_EQ(queue.back().id, 1);
    EXPECT_FALSE(reader.isFixed(toSlot(1)));
    EXPECT_EQ(reader.loadObj(queue, 2), nullptr);
    EXPECT_EQ(queue.size(), 1u);
    EXPECT_ASSERTION(reader.isFixed(toSlot(2)), "findIt != m_restored.end()");
}

TEST_F(ReaderTest, LoadObjKeepsWhatIsEnteredUnderAnId)
{
    Scripted::onRead = [](Scripted& object, Reader& reader) { reader.read(object.number); };
    Reader& reader = openBare("0 8 Scripted 1 \n1 2 \n");
    Reader::FixingQueue queue;
    Serializable* const first = reader.loadObj(queue, 1);
    EXPECT_NE(reader.loadObj(queue, 1), first);
    Bulletin* slot = static_cast<Bulletin*>(toSlot(1));
    reader.fix(slot);
    EXPECT_EQ(dynamic_cast<Serializable*>(slot), first);
}

TEST_F(ReaderTest, PerformReturnsAndFixesARootUnderWhoseIdLoadObjHasEnteredAnother)
{
    std::vector<std::string> steps;
    Scripted::onRead = readReference;
    Scripted::onFixup = [&steps](Scripted& object, Reader& reader)
    {
        steps.push_back(std::to_string(object.number) + (reader.isLast() ? " last" : ""));
        return fixReference(object, reader);
    };
    Reader& reader = open("0 8 Scripted 7 0 \n1 8 2 \n1 9 1 \n");
    Reader::FixingQueue queue;
    const auto* const first = dynamic_cast<Scripted*>(reader.loadObj(queue, 1));
    const auto* const root = dynamic_cast<Scripted*>(reader.perform());
    ASSERT_TRUE(first && root);
    EXPECT_EQ(root->number, 8);
    EXPECT_EQ(steps, (std::vector<std::string>{"9", "8 last"}));
    const auto* const second = dynamic_cast<Scripted*>(root->reference);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->number, 9);
    EXPECT_EQ(second->reference, first);
}

TEST_F(ReaderTest, LoadObjLeavesNothingToWaitForOfAnObjectThatSkipsItself)
{
    Scripted::onRead = [](Scripted& object, Reader& reader)
    {
        reader.read(object.number);
        if (object.number == 2)
            throw Reader::Skip();
    };
    Reader& reader = openBare("0 8 Scripted 1 \n1 2 \n0 8 Refusing 3 \n");
    Reader::FixingQueue queue;
    const Serializable* const object = reader.loadObj(queue, 1);
    EXPECT_EQ(reader.loadObj(queue, 2), nullptr);
    EXPECT_EQ(reader.loadObj(queue, 3), nullptr);
    ASSERT_EQ(queue.size(), 1u);
    EXPECT_EQ(queue.back().object, object);
    EXPECT_EQ(Persistable::getCount(), 1u);
}

// Fixing

TEST_F(ReaderTest, FixesTheLastObjectReadFirst)
{
    std::vector<int> order;
    Scripted::onRead = readReference;
    Scripted::onFixup = [&order](Scripted& object, Reader&)
    {
        order.push_back(object.number);
        return true;
    };
    perform("0 8 Scripted 1 2 \n1 2 3 \n1 3 0 \n");
    EXPECT_EQ(order, (std::vector<int>{3, 2, 1}));
}

class ReaderFixingTest : public ReaderTest
{
protected:
    /// Reads so many objects; each is fixed when the function says so. Notes number, pass and whether it is the last.
    void fix(int count, const std::function<bool(int)>& isReady)
    {
        Scripted::onRead = readReference;
        Scripted::onFixup = [this, isReady](Scripted& object, Reader& reader)
        {
            m_steps.push_back(std::to_string(object.number) + " in " + std::to_string(reader.getPass()) +
                              (reader.isLast() ? " last" : ""));
            return isReady(object.number);
        };
        std::string records = "0 8 Scripted 1 0 \n";
        for (int number = 2; number <= count; ++number)
            records += "1 " + std::to_string(number) + " 0 \n";
        perform(records);
    }

    std::vector<std::string> m_steps;
};

TEST_F(ReaderFixingTest, SingleObjectIsTheLastAtOnce)
{
    fix(1, [](int) { return true; });
    EXPECT_EQ(m_steps, std::vector<std::string>{"1 in 0 last"});
    EXPECT_EQ(m_reader->getPass(), 0u);
}

TEST_F(ReaderFixingTest, ReaderThatFixesNothingSaysLastAndPassZero)
{
    open("");
    EXPECT_TRUE(m_reader->isLast());
    EXPECT_EQ(m_reader->getPass(), 0u);
}

TEST_F(ReaderFixingTest, ObjectThatHasToWaitComesAfterAllOthersAndPassesAreCounted)
{
    int refusals = 2;
    fix(3, [&refusals](int number) { return number != 3 || refusals-- == 0; });
    EXPECT_EQ(m_steps, (std::vector<std::string>{"3 in 0", "2 in 0", "1 in 0", "3 in 1 last", "3 in 2 last"}));
    EXPECT_EQ(m_reader->getPass(), 2u);
}

TEST_F(ReaderFixingTest, PassEndsWithTheFirstObjectThatHadToWait)
{
    std::vector<int> refusals = {0, 1, 2, 3};
    fix(3, [&refusals](int number) { return refusals[static_cast<std::size_t>(number)]-- == 0; });
    EXPECT_EQ(m_steps, (std::vector<std::string>{"3 in 0", "2 in 0", "1 in 0", "3 in 1", "2 in 1", "1 in 1", "3 in 2",
                                                 "2 in 2", "3 in 3 last"}));
}

TEST_F(ReaderFixingTest, MarkerThatIsFixedHandsOverToTheNextThatWaits)
{
    std::vector<int> refusals = {0, 3, 3, 1};
    fix(3, [&refusals](int number) { return refusals[static_cast<std::size_t>(number)]-- == 0; });
    EXPECT_EQ(m_steps, (std::vector<std::string>{"3 in 0", "2 in 0", "1 in 0", "3 in 1", "2 in 1", "1 in 1", "2 in 2",
                                                 "1 in 2", "2 in 3", "1 in 3 last"}));
}

TEST_F(ReaderTest, IsFixedTellsWhetherAFixupHasReturnedTrue)
{
    std::vector<bool> fixed;
    Scripted::onRead = readReference;
    Scripted::onFixup = [&fixed](Scripted& object, Reader& reader)
    {
        const bool isReady = object.number != 1 || reader.isFixed(toSlot(1)) || reader.isLast();
        for (std::uintptr_t id = 1; id <= 3; ++id)
            fixed.push_back(reader.isFixed(toSlot(id)));
        return isReady;
    };
    perform("0 8 Scripted 1 0 \n1 2 0 \n0 7 Unknown \n");
    EXPECT_EQ(fixed, (std::vector<bool>{false, false, false, false, true, false}));
}

TEST_F(ReaderTest, IsFixedOfAnUnknownIdFails)
{
    Scripted::onRead = nullptr;
    Scripted::onFixup = [](Scripted&, Reader& reader) { return reader.isFixed(toSlot(2)); };
    EXPECT_ASSERTION(perform("0 8 Scripted \n"), "findIt != m_restored.end()");
    Scripted::onFixup = [](Scripted&, Reader& reader) { return reader.isFixed(nullptr); };
    EXPECT_ASSERTION(perform("0 8 Scripted \n"), "findIt != m_restored.end()");
}

TEST_F(ReaderTest, ExceptionOfAFixupPassesThroughAndNothingIsDeleted)
{
    Scripted::onRead = nullptr;
    Scripted::onFixup = [](Scripted&, Reader& reader) -> bool { reader.throwError("broken"); };
    EXPECT_PROBLEM(perform("0 8 Scripted \n1 \n"), "broken");
    EXPECT_EQ(Persistable::getCount(), 2u);
}

// Progress

TEST_F(ReaderTest, TellsTheStatusWhatItDoes)
{
    Scripted::onRead = nullptr;
    m_in.str(getPreamble() + "0 8 Scripted \n");
    Reader(m_in, "Test", true).perform();
    EXPECT_EQ(m_status->texts, (std::vector<std::string>{"Reading objects", "Restore objects"}));
}

TEST_F(ReaderTest, TellsTheStatusNothingUnlessAskedTo)
{
    Scripted::onRead = nullptr;
    Scripted::onFixup = [this](Scripted&, Reader&)
    {
        m_status->elapse();
        return true;
    };
    perform("0 8 Scripted \n");
    EXPECT_TRUE(m_status->texts.empty());
    EXPECT_TRUE(m_status->updates.empty());
}

TEST_F(ReaderTest, ChecksForAnInterruptBeforeEachRecordButTheFirst)
{
    Scripted::onRead = [this](Scripted&, Reader&) { m_status->elapse(); };
    perform("0 8 Scripted \n1 \n");
    EXPECT_EQ(m_status->updates, (std::vector<int>{-1, -1}));
}

TEST_F(ReaderTest, InterruptEndsTheReading)
{
    Scripted::onRead = nullptr;
    m_status->setInterrupted();
    EXPECT_THROW(perform("0 8 Scripted \n1 \n"), Interrupted);
    EXPECT_EQ(Persistable::getCount(), 1u);
}

TEST_F(ReaderTest, FixingReportsFromTenToFortyPerCentAndIsNotInterrupted)
{
    Scripted::onRead = nullptr;
    Scripted::onFixup = [this](Scripted&, Reader&)
    {
        m_status->elapse();
        m_status->setInterrupted();
        return true;
    };
    m_in.str(getPreamble() + "0 8 Scripted \n1 \n1 \n1 \n1 \n1 \n1 \n");
    EXPECT_NO_THROW(Reader(m_in, "Test", true).perform());
    EXPECT_EQ(m_status->updates, (std::vector<int>{14, 18, 22, 27, 31, 35, 40}));
}

TEST_F(ReaderTest, ObjectsThatHaveToWaitReportNothing)
{
    bool isReady = false;
    Scripted::onRead = nullptr;
    Scripted::onFixup = [this, &isReady](Scripted&, Reader&)
    {
        m_status->elapse();
        return std::exchange(isReady, true);
    };
    m_in.str(getPreamble() + "0 8 Scripted \n");
    Reader(m_in, "Test", true).perform();
    EXPECT_EQ(m_status->updates, std::vector<int>{40});
}

// Numbers

TEST_F(ReaderTest, ReadsEveryIntegerType)
{
    EXPECT_EQ(readBare<short>("-32768 "), -32768);
    EXPECT_EQ(readBare<unsigned short>("65535 "), 65535);
    EXPECT_EQ(readBare<int>("\n\t -12 "), -12);
    EXPECT_EQ(readBare<unsigned>("4294967295 "), 4294967295u);
    EXPECT_EQ(readBare<long>("-9223372036854775808 "), std::numeric_limits<long>::min());
    EXPECT_EQ(readBare<unsigned long>("18446744073709551615 "), std::numeric_limits<unsigned long>::max());
    EXPECT_EQ(readBare<long long>("9223372036854775807 "), std::numeric_limits<long long>::max());
    EXPECT_EQ(readBare<unsigned long long>("+7 "), 7u);
}

TEST_F(ReaderTest, ReadsBoolAndCharactersAsNumbers)
{
    EXPECT_TRUE(readBare<bool>("1 "));
    EXPECT_FALSE(readBare<bool>("0 "));
    EXPECT_EQ(readBare<char>("65 "), 'A');
    EXPECT_EQ(readBare<signed char>("-128 "), -128);
    EXPECT_EQ(readBare<unsigned char>("255 "), 255);
    EXPECT_EQ(readBare<wchar_t>("8364 "), L'\u20ac');
    EXPECT_EQ(readBare<char8_t>("127 "), char8_t(127));
    EXPECT_EQ(readBare<char16_t>("65535 "), u'\uffff');
    EXPECT_EQ(readBare<char32_t>("1114111 "), U'\U0010ffff');
}

TEST_F(ReaderTest, RefusesBoolAndCharactersOutOfRange)
{
    EXPECT_PROBLEM(readBare<bool>("2 "), "Invalid stream");
    EXPECT_PROBLEM(readBare<bool>("-1 "), "Invalid stream");
    EXPECT_PROBLEM(readBare<unsigned char>("256 "), "Invalid stream");
    EXPECT_PROBLEM(readBare<signed char>("-129 "), "Invalid stream");
    EXPECT_PROBLEM(readBare<char>("A "), "Invalid stream");
    EXPECT_PROBLEM(readBare<char16_t>("65536 "), "Invalid stream");
}

TEST_F(ReaderTest, ReadsRealNumbers)
{
    EXPECT_EQ(readBare<double>("0.1 "), 0.1);
    EXPECT_EQ(readBare<double>("-1e-5\n"), -1e-5);
    EXPECT_EQ(readBare<double>("1E+300 "), 1e300);
    EXPECT_EQ(readBare<double>(".5 "), 0.5);
    EXPECT_EQ(readBare<double>("5. "), 5);
    EXPECT_TRUE(std::signbit(readBare<double>("-0 ")));
    EXPECT_EQ(readBare<double>("4.94066e-324 "), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(readBare<float>("0.1 "), 0.1F);
    EXPECT_EQ(readBare<long double>("2.5 "), 2.5L);
    EXPECT_PROBLEM(readBare<double>("1e999 "), "Invalid stream");
    EXPECT_PROBLEM(readBare<double>("inf "), "Invalid stream");
}

TEST_F(ReaderTest, NumberAtTheVeryEndOfTheStreamIsPremature)
{
    EXPECT_PROBLEM(readBare<int>("12"), "Premature end of file");
    EXPECT_PROBLEM(readBare<double>("1.5"), "Premature end of file");
}

TEST_F(ReaderTest, MissingNumberIsInvalid)
{
    EXPECT_PROBLEM(readBare<int>(""), "Invalid stream");
    EXPECT_PROBLEM(readBare<int>("  "), "Invalid stream");
    EXPECT_PROBLEM(readBare<int>("a "), "Invalid stream");
    EXPECT_PROBLEM(readBare<int>("- "), "Invalid stream");
    EXPECT_PROBLEM(readBare<int>("4294967296 "), "Invalid stream");
    EXPECT_PROBLEM(readBare<double>("1e "), "Invalid stream");
}

TEST_F(ReaderTest, NumbersHaveTheOutcomeOfFormattedExtraction)
{
    const std::vector<std::string> texts = {"12 ",
                                            "+12 ",
                                            "-12 ",
                                            "012 ",
                                            "12x",
                                            "12.5 ",
                                            "1,234 ",
                                            "0x1f ",
                                            "0X1F ",
                                            "0x ",
                                            "-0x1 ",
                                            "x1 ",
                                            "1e5 ",
                                            "1e+ ",
                                            "1e-7x",
                                            "1.5.5 ",
                                            "-.5 ",
                                            "-e5 ",
                                            "- ",
                                            "+ ",
                                            "--1 ",
                                            "1-1 ",
                                            "1 ",
                                            "1",
                                            "-",
                                            "",
                                            " ",
                                            "\v\f\r1 ",
                                            "\xa0"
                                            "1 ",
                                            "32767 ",
                                            "32768 ",
                                            "-32769 ",
                                            "65536 ",
                                            "-1 ",
                                            "-65536 ",
                                            "2147483648 ",
                                            "-2147483649 ",
                                            "4294967295 ",
                                            "4294967296 ",
                                            "-4294967295 ",
                                            "9223372036854775808 ",
                                            "18446744073709551616 ",
                                            "1e400 ",
                                            "-1e400 ",
                                            "1e-400 ",
                                            "1e38 ",
                                            "1e39 ",
                                            "3.4028236e38 ",
                                            "nan ",
                                            "infinity ",
                                            "0x1p3 ",
                                            "00000000000000000000000000000000000000000000000001 ",
                                            "123456789012345678901234567890123456789012345 ",
                                            "0.1234567890123456789012345678901234567890123456789 ",
                                            "1e0000000000000000000000000000000000000000000001 ",
                                            std::string("1\0 ", 3),
                                            "\xff"};
    for (const std::string& text : texts)
    {
        expectFormattedExtraction<short>(text);
        expectFormattedExtraction<unsigned short>(text);
        expectFormattedExtraction<int>(text);
        expectFormattedExtraction<unsigned>(text);
        expectFormattedExtraction<long>(text);
        expectFormattedExtraction<unsigned long>(text);
        expectFormattedExtraction<long long>(text);
        expectFormattedExtraction<unsigned long long>(text);
        expectFormattedExtraction<float>(text);
        expectFormattedExtraction<double>(text);
        expectFormattedExtraction<long double>(text);
        expectFormattedExtraction<int>(text, std::ios::dec);
        expectFormattedExtraction<int>(text, std::ios::hex | std::ios::skipws);
        expectFormattedExtraction<int>(text, std::ios::skipws);
        expectFormattedHexExtraction(text);
        expectFormattedHexExtraction(text, std::ios::oct | std::ios::skipws);
    }
}

TEST_F(ReaderTest, RandomCharactersHaveTheOutcomeOfFormattedExtraction)
{
    const std::string characters = "0123456789 .-+eExXaf0";
    std::mt19937 random(5);
    for (int i = 0; i < 5000; ++i)
    {
        std::string text;
        for (std::size_t size = random() % 12; size > 0; --size)
            text += characters[random() % characters.size()];
        expectFormattedExtraction<int>(text);
        expectFormattedExtraction<unsigned>(text);
        expectFormattedExtraction<double>(text);
        expectFormattedHexExtraction(text);
    }
}

TEST_F(ReaderTest, NumbersAreReadAcrossTheEndOfABuffer)
{
    DrippingBuffer buffer("  -123 1.5e3 1f 5 ");
    std::istream in(&buffer);
    open("").set(&in);
    int whole = 0;
    double real = 0;
    Bulletin* slot = nullptr;
    m_reader->read(whole).read(real).read(slot);
    EXPECT_EQ(whole, -123);
    EXPECT_EQ(real, 1500);
    EXPECT_EQ(toId(slot), 0x1fu);
}

TEST_F(ReaderTest, ExceptionOfTheBufferMakesTheStreamBad)
{
    for (const char* const text : {"", "1", "1."})
    {
        DrippingBuffer buffer(text, true);
        std::istream in(&buffer);
        open("").set(&in);
        double number = 0;
        EXPECT_PROBLEM(m_reader->read(number), "Invalid stream");
        EXPECT_TRUE(in.bad());
    }
}

TEST_F(ReaderTest, ExceptionOfTheBufferLeavesAStreamThatThrows)
{
    DrippingBuffer buffer("1", true);
    std::istream in(&buffer);
    in.exceptions(std::ios::badbit);
    open("").set(&in);
    int number = 0;
    EXPECT_THROW(m_reader->read(number), BufferError);
    EXPECT_TRUE(in.bad());
}

TEST_F(ReaderTest, StreamThatThrowsOnFailuresDoesSo)
{
    Reader& reader = openBare("4294967296 x");
    m_bare.exceptions(std::ios::failbit);
    int number = 0;
    EXPECT_THROW(reader.read(number), std::ios_base::failure);
    EXPECT_EQ(number, std::numeric_limits<int>::max());
}

TEST_F(ReaderTest, FlushesTheStreamThatIsTied)
{
    FullBuffer buffer(10);
    std::ostream tied(&buffer);
    Reader& reader = openBare("1 2 ");
    m_bare.tie(&tied);
    int number = 0;
    reader.read(number).read(number);
    EXPECT_EQ(number, 2);
}

// Texts and blocks

TEST_F(ReaderTest, ReadsCountedBytes)
{
    std::string text = "before";
    openBare("5 a b\nc 3 xyz").readString(text);
    EXPECT_EQ(text, "a b\nc");
    m_reader->readString(text);
    EXPECT_EQ(text, "xyz");
}

TEST_F(ReaderTest, ReadsAnEmptyText)
{
    std::string text = "before";
    openBare("0  7 ").readString(text);
    EXPECT_EQ(text, "");
    int number = 0;
    m_reader->read(number);
    EXPECT_EQ(number, 7);
}

TEST_F(ReaderTest, ReadsTextAsUtf8)
{
    Ztring text;
    openBare("4 \xe2\x82\xac! ").read<Ztring>(text);
    EXPECT_EQ(text.toUtf8(), "\xe2\x82\xac!");
    EXPECT_EQ(text.length(), 2u);
}

TEST_F(ReaderTest, ZeroByteEndsAText)
{
    std::string text;
    int number = 0;
    openBare(std::string("5 ab\0cd 7 ", 10)).readString(text);
    m_reader->read(number);
    EXPECT_EQ(text, "ab");
    EXPECT_EQ(number, 7);
}

TEST_F(ReaderTest, TextCutAnywhereIsPremature)
{
    const std::string whole = "12 abcdefghijkl";
    for (std::size_t size = 1; size < whole.size(); ++size)
    {
        std::string text;
        EXPECT_PROBLEM(openBare(whole.substr(0, size)).readString(text), "Premature end of file");
    }
    std::string text;
    EXPECT_NO_THROW(openBare(whole).readString(text));
}

TEST_F(ReaderTest, ReadsLongTexts)
{
    std::string whole;
    for (int i = 0; i < 100000; ++i)
        whole += std::to_string(i);
    std::string text;
    openBare(std::to_string(whole.size()) + " " + whole + " ").readString(text);
    EXPECT_EQ(text, whole);
    EXPECT_PROBLEM(openBare(std::to_string(whole.size() + 1) + " " + whole).readString(text), "Premature end of file");
}

TEST_F(ReaderTest, ReadsBlocksOfAnyBytes)
{
    unsigned size = 0;
    char* bytes = nullptr;
    openBare(std::string("5 \0\n\xff 1 ", 8)).read(size, bytes);
    const std::unique_ptr<char[]> owned(bytes);
    EXPECT_EQ(std::string(bytes, size), std::string("\0\n\xff 1", 5));
}

TEST_F(ReaderTest, ReadsEmptyBlocks)
{
    unsigned size = 1;
    char* bytes = nullptr;
    openBare("0  ").read(size, bytes);
    const std::unique_ptr<char[]> owned(bytes);
    EXPECT_EQ(size, 0u);
    EXPECT_TRUE(bytes);
}

TEST_F(ReaderTest, ReadsLargeBlocks)
{
    std::string whole;
    for (int i = 0; i < 200000; ++i)
        whole += static_cast<char>(i * 7);
    unsigned size = 0;
    char* bytes = nullptr;
    openBare(std::to_string(whole.size()) + " " + whole + " ").read(size, bytes);
    const std::unique_ptr<char[]> owned(bytes);
    EXPECT_EQ(std::string(bytes, size), whole);
}

TEST_F(ReaderTest, BlockThatFailsLeavesNothingToDelete)
{
    for (const char* const text : {"4 abc", "4", "", "x", "100000 abc", "4294967295 abc"})
    {
        unsigned size = 0;
        char unowned = 0;
        char* bytes = &unowned;
        EXPECT_THROW(openBare(text).read(size, bytes), Problem);
        EXPECT_EQ(bytes, nullptr) << text;
    }
}

TEST_F(ReaderTest, BlockCutAnywhereIsPremature)
{
    unsigned size = 0;
    char* bytes = nullptr;
    EXPECT_PROBLEM(openBare("4 abc").read(size, bytes), "Premature end of file");
    EXPECT_PROBLEM(openBare("4 ").read(size, bytes), "Premature end of file");
    EXPECT_PROBLEM(openBare("100000 abc").read(size, bytes), "Premature end of file");
}

TEST_F(ReaderTest, ExceptionOfTheBufferInsideATextMakesTheStreamBad)
{
    DrippingBuffer buffer("4 ab", true);
    std::istream in(&buffer);
    open("").set(&in);
    std::string text;
    EXPECT_PROBLEM(m_reader->readString(text), "Invalid stream");
}

TEST_F(ReaderTest, StreamThatItsBufferMakesBadInsideATextIsInvalid)
{
    BadMakingBuffer buffer("4 ab");
    std::istream in(&buffer);
    buffer.stream = &in;
    open("").set(&in);
    std::string text;
    EXPECT_PROBLEM(m_reader->readString(text), "Invalid stream");
    EXPECT_TRUE(in.bad());
}

TEST_F(ReaderTest, FlushesTheStreamThatIsTiedWithEachPartOfAText)
{
    class FlushCounter : public std::stringbuf
    {
    public:
        int flushes = 0;

    protected:
        int sync() override
        {
            ++flushes;
            return 0;
        }
    };
    FlushCounter buffer;
    std::ostream tied(&buffer);
    Reader& reader = openBare("5 a b\nc 7 ");
    m_bare.tie(&tied);
    std::string text;
    reader.readString(text);
    EXPECT_EQ(text, "a b\nc");
    EXPECT_EQ(buffer.flushes, 3); // for the length, the separator and the characters
    int number = 0;
    reader.read(number);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(buffer.flushes, 4);
}

// Collections

TEST_F(ReaderTest, ReadsAnArrayWithAFunctor)
{
    Array<int> numbers;
    numbers.push_back(9);
    openBare("3 5 6 7 ").read(numbers, [](Reader& reader, int& number) { reader.read(number); });
    EXPECT_EQ(std::vector<int>(numbers.begin(), numbers.end()), (std::vector<int>{5, 6, 7}));
}

TEST_F(ReaderTest, ReadsAnArrayOfReferences)
{
    Array<Bulletin*> slots;
    openBare("2 a ff ").read<Bulletin*, NativeReader>(slots, NativeReader());
    ASSERT_EQ(slots.size(), 2u);
    EXPECT_EQ(toId(slots[0]), 0xau);
    EXPECT_EQ(toId(slots[1]), 0xffu);
}

TEST_F(ReaderTest, FillsABoardInStreamOrderWithoutSkippedObjects)
{
    Recorder recorder;
    Scripted::onRead = [](Scripted& object, Reader& reader)
    {
        object.setKey(BulletinKey());
        readReference(object, reader);
    };
    ObservedDocument::s_recorder = &recorder;
    auto* const root =
        dynamic_cast<Document*>(perform("0 16 ObservedDocument 3 4 2 3 \n0 8 Scripted 2 0 \n0 7 Unknown \n2 4 0 \n"));
    std::vector<int> added;
    for (const Heard& heard : recorder.heard)
    {
        EXPECT_EQ(heard.operation, "added");
        added.push_back(dynamic_cast<const Scripted*>(heard.second)->number);
    }
    EXPECT_EQ(added, (std::vector<int>{4, 2}));
    EXPECT_EQ(root->size(), 2u);
}

TEST_F(ReaderTest, FillsAListInStreamOrderWithoutNulls)
{
    Scripted::onRead = readReference;
    auto* const root =
        dynamic_cast<NodeList*>(perform("0 8 NodeList 5 3 2 0 4 2 \n0 8 Scripted 2 0 \n2 3 0 \n0 7 Unknown \n"));
    std::vector<int> numbers;
    for (const Bulletin* const member : *root)
        numbers.push_back(dynamic_cast<const Scripted*>(member)->number);
    EXPECT_EQ(numbers, (std::vector<int>{3, 2, 2}));
}

TEST_F(ReaderTest, SecondCollectionForAnOwnerFails)
{
    Document board;
    Reader& reader = openBare("0 0 ");
    reader.readBulletins(board);
    EXPECT_PROBLEM(reader.readBulletins(board), "Already read Bulletins");
}

TEST_F(ReaderTest, FixingACollectionThatWasNotReadFails)
{
    Document board;
    NodeList list;
    open("");
    EXPECT_PROBLEM(m_reader->fixBulletins(board), "BulletinBoard has no Bulletins");
    EXPECT_PROBLEM(m_reader->fixBulletins(list), "BulletinBoard has no Bulletins");
}

TEST_F(ReaderTest, FixedCollectionIsForgotten)
{
    NodeList list;
    Reader& reader = openBare("0 1 0 ");
    reader.readBulletins(list);
    reader.fixBulletins(list);
    EXPECT_PROBLEM(reader.fixBulletins(list), "BulletinBoard has no Bulletins");
    reader.readBulletins(list);
    reader.fixBulletins(list);
    EXPECT_TRUE(list.empty());
}

TEST_F(ReaderTest, CollectionThatIsNeverFixedIsFreedWithTheReader)
{
    NodeList list;
    openBare("2 1 2 ").readBulletins(list);
    m_reader.reset();
    EXPECT_TRUE(list.empty());
}

TEST_F(ReaderTest, CollectionCutShortFails)
{
    NodeList list;
    EXPECT_PROBLEM(openBare("2 1").readBulletins(list), "Premature end of file");
    EXPECT_PROBLEM(openBare("2 1 ").readBulletins(list), "Invalid stream");
    EXPECT_PROBLEM(openBare("2").readBulletins(list), "Premature end of file");
}

TEST_F(ReaderTest, ObjectTwiceInTheCollectionOfABoardFailsAtItsKey)
{
    Scripted::onRead = nullptr;
    EXPECT_ASSERTION(perform("0 8 Document 2 2 2 \n0 8 Scripted \n"), "!hasKey(key)");
}

// Lines

TEST_F(ReaderTest, SkipLineEndsAfterTheNextLineFeed)
{
    int number = 0;
    openBare("1 2 3\n4 \n").skipLine();
    m_reader->read(number);
    EXPECT_EQ(number, 4);
}

TEST_F(ReaderTest, SkipLineEndsWithTheStream)
{
    openBare("1 2 3").skipLine();
    EXPECT_EQ(m_bare.rdstate(), std::ios::eofbit);
}

TEST_F(ReaderTest, SaveLineKeepsTheRestOfTheLine)
{
    int number = 0;
    Reader& reader = openBare("1 2 3\n4 \n");
    reader.read(number);
    reader.saveLine("Saved");
    const auto* const line = dynamic_cast<SavedLine*>(reader.getPtr("Saved"));
    ASSERT_TRUE(line);
    EXPECT_EQ(line->getLine(), " 2 3");
    reader.read(number);
    EXPECT_EQ(number, 4);
}

TEST_F(ReaderTest, SaveLineKeepsNothingOfAnEmptyRest)
{
    Reader& reader = openBare("\n4 \n");
    reader.saveLine("Saved");
    EXPECT_FALSE(reader.hasKey("Saved"));
}

TEST_F(ReaderTest, SaveLineFailsWhereTheStreamBreaks)
{
    BreakingBuffer buffer(" 2 3");
    std::istream in(&buffer);
    Reader& reader = openBare("");
    reader.set(&in);
    EXPECT_PROBLEM(reader.saveLine("Saved"), "Invalid stream");
    EXPECT_FALSE(reader.hasKey("Saved"));
}

TEST_F(ReaderTest, SaveLineUnderATakenKeyFailsAndKeepsTheFirst)
{
    Reader& reader = openBare("first\nsecond\n");
    reader.saveLine("Saved");
    EXPECT_ASSERTION(reader.saveLine("Saved"), "!hasKey(key)");
    EXPECT_EQ(dynamic_cast<SavedLine*>(reader.getPtr("Saved"))->getLine(), "first");
}

TEST_F(ReaderTest, SavedLineStaysOnTheBoardWhenAnObserverThrows)
{
    Reader& reader = openBare("line\n");
    Recorder recorder([](const Heard&) { Problem::throwProblem("observer"); });
    recorder.observe(reader);
    EXPECT_PROBLEM(reader.saveLine("Saved"), "observer");
    EXPECT_TRUE(reader.hasKey("Saved"));
}

// The input

TEST_F(ReaderTest, SetReplacesTheInputAndReturnsThePreviousOne)
{
    std::istringstream other("7 ");
    Reader& reader = open("");
    EXPECT_EQ(reader.set(&other), &m_in);
    EXPECT_EQ(&reader.getIn(), &other);
    EXPECT_EQ(reader.set(&m_in), &other);
}

TEST_F(ReaderTest, SetOfNoInputFails)
{
    EXPECT_ASSERTION(open("").set(nullptr), "valid(in)");
    EXPECT_EQ(&m_reader->getIn(), &m_in);
}

TEST_F(ReaderTest, SetGivesTheInputTheClassicLocale)
{
    Reader& reader = open("");
    const ForeignLocale foreign;
    std::istringstream other("1.5 x");
    reader.set(&other);
    double number = 0;
    reader.getIn() >> number;
    EXPECT_EQ(number, 1.5);
}

TEST_F(ReaderTest, SetTurnsWhiteSpaceSkippingOn)
{
    Reader& reader = open("");
    std::istringstream other("1 2 ");
    other.unsetf(std::ios_base::skipws);
    reader.set(&other);
    int number = 0;
    reader.read(number).read(number);
    EXPECT_EQ(number, 2);
}

TEST_F(ReaderTest, StreamThatThrowsIsInDecimalAfterAHexadecimalNumber)
{
    Reader& reader = openBare("x");
    m_bare.exceptions(std::ios_base::failbit);
    unsigned number = 0;
    EXPECT_THROW(reader.readHex(number), std::ios_base::failure);
    EXPECT_EQ(m_bare.flags() & std::ios_base::basefield, std::ios_base::dec);
}

TEST_F(ReaderTest, CheckValidTellsFailuresFromTheEnd)
{
    Reader& reader = openBare("");
    EXPECT_NO_THROW(reader.checkValid());
    m_bare.clear(std::ios::eofbit);
    EXPECT_PROBLEM(reader.checkValid(), "Premature end of file");
    m_bare.clear(std::ios::eofbit | std::ios::failbit);
    EXPECT_PROBLEM(reader.checkValid(), "Invalid stream");
    m_bare.clear(std::ios::badbit);
    EXPECT_PROBLEM(reader.checkValid(), "Invalid stream");
}

TEST_F(ReaderTest, ThrowErrorThrowsTheText)
{
    EXPECT_PROBLEM(open("").throwError("text"), "text");
}
