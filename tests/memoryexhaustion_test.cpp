// SPDX-License-Identifier: MIT
// What is left when memory runs out: every allocation of an operation fails once, alone and with all after it.
#include <kel/args.h>
#include <kel/autofiledelete.h>
#include <kel/batchtask.h>
#include <kel/bulletin.h>
#include <kel/bulletinboard.h>
#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/filewriter.h>
#include <kel/formdataposter.h>
#include <kel/interrupted.h>
#include <kel/mementos.h>
#include <kel/namedkeys.h>
#include <kel/observable.h>
#include <kel/orderedcomparator.h>
#include <kel/othertasks.h>
#include <kel/pool.h>
#include <kel/rule.h>
#include <kel/rules.h>
#include <kel/savedline.h>
#include <kel/serializablecreators.h>
#include <kel/status.h>
#include <kel/stdouterr.h>
#include <kel/tasks.h>
#include <kel/taskslistener.h>
#include <kel/tooltips.h>
#include <kel/undoredostate.h>
#include <kel/use.h>

#include "support/failingallocation.h"
#include "support/installed.h"
#include "support/persistable.h"
#include "support/problem.h"
#include "support/recorder.h"
#include "support/streams.h"
#include "support/temporarydirectory.h"
#include "support/testlog.h"
#include "support/testplatform.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <initializer_list>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace
{
/// Observes without taking memory.
class Listener : public Observer
{
public:
    void update(Notifier&) override { ++heard; }

    int heard = 0;
};

/// A bulletin that counts those alive.
class Counted : public Bulletin
{
public:
    Counted() : Counted(getStaticKey()) {}
    Counted(const Counted& other) : Bulletin(other) { ++s_count; }
    explicit Counted(const BulletinKey& key) : Bulletin(key) { ++s_count; }
    ~Counted() override { --s_count; }
    Counted* clone() const override { return new Counted(*this); }

    static const BulletinKey& getStaticKey()
    {
        static const BulletinKey key("Counted");
        return key;
    }

    static inline int s_count = 0;
};

std::string getKeys(const BulletinBoard& board)
{
    std::ostringstream out;
    for (const auto& [number, bulletin] : board)
        out << bulletin->getKey().getName() << ' ';
    return out.str();
}

struct MemoryExhaustionServices : testing::Test
{
    Status status; // records nothing: updates come when time has passed, and no block may stay
    Installed<TestPlatform> platform;
    Installed<TestLog> log;
};
} // namespace

// --- Saving and opening

namespace
{
struct MemoryExhaustionSaving : MemoryExhaustionServices
{
    /// A document with all kinds of data.
    static std::unique_ptr<Document> makeDocument(const std::string& name)
    {
        auto document = std::make_unique<Document>();
        auto* const first = new Node(name);
        first->setKey(BulletinKey("first"));
        document->add(first);
        auto* const second = new Node("\xC3\xA9t\xC3\xA9, long enough to need a block of its own");
        document->add(second);
        first->first = second;
        first->second = first;
        auto* const third = new Node;
        third->setKey(second->getKey());
        second->first = third;
        return document;
    }

    static std::string getRecords(Document& document) { return write(&document); }

    ~MemoryExhaustionSaving() override { Persistable::deleteAll(); }

    Kel::File getFile(const std::string& name) const { return Ztring(directory / name); }

    void save(Document& document)
    {
        FileWriter writer;
        writer.open(getFile("model"), true)->writeObj(&document);
        writer.close();
    }

    std::string openRecords(const std::string& name)
    {
        FileReader reader;
        auto* const root = dynamic_cast<Document*>(reader.open(getFile(name), true)->perform());
        std::string records = root ? getRecords(*root) : "no document";
        Persistable::deleteAll();
        return records;
    }

    TemporaryDirectory directory;
};

struct Saving
{
    std::unique_ptr<Document> document = MemoryExhaustionSaving::makeDocument("name");
    std::ostringstream out;

    ~Saving() { Persistable::deleteAll(); }
};
} // namespace

TEST_F(MemoryExhaustionSaving, StreamHoldsABeginningOfTheWholeAndTheGraphCanBeSavedAgain)
{
    Saving whole;
    Writer(whole.out, "Test", false).writeObj(whole.document.get());
    const std::string expected = whole.out.str();
    Persistable::deleteAll();
    static_cast<void>(whole.document.release());
    const auto failures = failEachAllocation([] { return std::make_unique<Saving>(); },
                                             [](auto& saving)
                                             {
                                                 Writer writer(saving->out, "Test", false);
                                                 writer.writeObj(saving->document.get());
                                             },
                                             [&](auto& saving, bool threw)
                                             {
                                                 const std::string written = saving->out.str();
                                                 if (!threw && saving->out.good())
                                                 {
                                                     EXPECT_EQ(written, expected);
                                                 }
                                                 else
                                                 {
                                                     EXPECT_EQ(written, expected.substr(0, written.size()));
                                                 }
                                                 saving->out.clear();
                                                 saving->out.str("");
                                                 Writer(saving->out, "Test", false).writeObj(saving->document.get());
                                                 EXPECT_EQ(saving->out.str(), expected);
                                                 static_cast<void>(saving->document.release());
                                             });
    EXPECT_GT(failures, 20u);
}

TEST_F(MemoryExhaustionSaving, FileHoldsTheOldOrTheNewContentsWhole)
{
    const auto getRecordsOf = [](const std::string& name)
    {
        std::string records = getRecords(*makeDocument(name).release());
        Persistable::deleteAll();
        return records;
    };
    const auto saveNew = [this](const std::string& name)
    {
        save(*makeDocument(name).release());
        Persistable::deleteAll();
    };
    const std::string oldRecords = getRecordsOf("old");
    const std::string newRecords = getRecordsOf("new");
    const auto failures = failEachAllocation(
        [&]
        {
            std::filesystem::remove(directory / "model.tmp");
            saveNew("old");
            std::exchange(platform->calls, {});
            return makeDocument("new").release();
        },
        [&](Document* document) { save(*document); },
        [&](Document*, bool threw)
        {
            Persistable::deleteAll();
            // Where the old file is gone already, the new one is complete under its other name.
            const std::string records = openRecords(directory.has("model") ? "model" : "model.tmp");
            EXPECT_TRUE(records == newRecords || (threw && records == oldRecords)) << records;
            saveNew("new");
            EXPECT_EQ(openRecords("model"), newRecords);
            EXPECT_FALSE(directory.has("model.tmp"));
            std::exchange(platform->calls, {});
        });
    EXPECT_GT(failures, 50u);
}

namespace
{
/// Deletes one file without taking memory.
class FrugalPlatform : public TestPlatform
{
public:
    void deleteFile(const Kel::File&, bool) override { std::remove(path.c_str()); }

    std::string path;
};
} // namespace

TEST(MemoryExhaustion, AbandonedSaveNeedsNoMemoryToDeleteItsTemporaryFile)
{
    const TemporaryDirectory directory;
    const Installed<FrugalPlatform> platform;
    platform->path = directory / "model.tmp";
    auto writer = std::make_unique<FileWriter>();
    writer->open(Ztring(directory / "model"), false);
    ASSERT_TRUE(directory.has("model.tmp"));
    {
        const FailingAllocation fault(1, Failing::FromThenOn);
        writer.reset();
    }
    EXPECT_FALSE(FailingAllocation::hasFailed());
    EXPECT_FALSE(directory.has("model.tmp"));
}

TEST_F(MemoryExhaustionSaving, OpeningFailsOrGivesTheWholeGraph)
{
    std::string records;
    {
        Document* const document = makeDocument("name").release();
        records = getRecords(*document);
        Persistable::deleteAll();
    }
    struct Opening
    {
        explicit Opening(const std::string& bytes) : in(bytes) {}

        std::istringstream in;
        Serializable* root = nullptr;
    };
    std::size_t alive = 0;
    const auto failures =
        failEachAllocation([&] { return std::make_unique<Opening>(getPreamble() + records); },
                           [](auto& opening)
                           {
                               Reader reader(opening->in, "Test", true);
                               opening->root = reader.perform();
                           },
                           [&](auto& opening, bool threw)
                           {
                               EXPECT_EQ(opening->root == nullptr, threw);
                               // The later the failure, the more objects there are: none of them is destroyed.
                               const std::size_t before = std::exchange(alive, Persistable::getCount());
                               EXPECT_TRUE(alive >= before || alive == 0) << alive << " after " << before;
                               if (opening->root != nullptr)
                               {
                                   EXPECT_TRUE(opening->in.eof());
                                   EXPECT_EQ(getRecords(dynamic_cast<Document&>(*opening->root)), records);
                               }
                               Persistable::deleteAll();
                               Document* const again = read<Document>(records);
                               EXPECT_EQ(getRecords(*again), records);
                               Persistable::deleteAll();
                           });
    EXPECT_GT(failures, 50u);
}

TEST_F(MemoryExhaustionSaving, OpeningAFileLeavesTheFileAndTheNextOpeningGivesTheWhole)
{
    Document* const document = makeDocument("name").release();
    const std::string records = getRecords(*document);
    save(*document);
    Persistable::deleteAll();
    Serializable* root = nullptr;
    const auto failures = failEachAllocation([] { return std::make_unique<FileReader>(); },
                                             [&](auto& reader)
                                             {
                                                 root = nullptr;
                                                 root = reader->open(getFile("model"), true)->perform();
                                             },
                                             [&](auto& reader, bool threw)
                                             {
                                                 EXPECT_EQ(root == nullptr, threw);
                                                 if (root != nullptr)
                                                 {
                                                     EXPECT_EQ(getRecords(dynamic_cast<Document&>(*root)), records);
                                                 }
                                                 reader.reset();
                                                 Persistable::deleteAll();
                                                 EXPECT_EQ(openRecords("model"), records);
                                             });
    EXPECT_GT(failures, 50u);
}

TEST_F(MemoryExhaustionSaving, LinesAndKeysOfAStreamAreReadWholeOrFail)
{
    const BulletinKey lineKey("line");
    const auto onRead = [&](Scripted& object, Reader& reader)
    {
        BulletinKey first;
        BulletinKey second;
        first.read(reader);
        second.read(reader);
        EXPECT_EQ(first, second);
        reader.saveLine(lineKey);
        object.number = 1;
    };
    const auto onFixup = [&](Scripted& object, Reader& reader)
    {
        const SavedLine::LineReader line(reader, lineKey);
        reader.read(object.number);
        return true;
    };
    const auto failures = failEachAllocation(
        [&]
        {
            Scripted::onRead = onRead;
            Scripted::onFixup = onFixup;
            return std::make_unique<std::istringstream>(getPreamble() +
                                                        "0 8 Scripted 0  0 0  0 1234567 and the rest\n");
        },
        [](auto& in)
        {
            Reader reader(*in, "Test", false);
            const auto* const read = dynamic_cast<const Scripted*>(reader.perform());
            EXPECT_EQ(read->number, 1234567);
        },
        [](auto&, bool)
        {
            Persistable::deleteAll();
            Scripted::onRead = nullptr;
            Scripted::onFixup = nullptr;
        });
    EXPECT_GT(failures, 20u);
}

TEST_F(MemoryExhaustionSaving, KeysReadAfterAFailureAreStillThoseOfTheirNumbers)
{
    // A caller who reads keys on his own may go on after a failure.
    std::string numbers;
    for (int i = 0; i < 100; ++i)
        numbers += "0  " + (std::ostringstream() << std::hex << i).str() + " ";
    failEachAllocation(
        [&]
        {
            auto in = std::make_unique<std::istringstream>(getPreamble() + numbers + numbers);
            return std::make_pair(std::make_unique<Reader>(*in, "Test", false), std::move(in));
        },
        [](auto& state)
        {
            std::vector<unsigned> first;
            std::vector<unsigned> second;
            first.reserve(100);
            second.reserve(100);
            const auto readInto = [&](std::vector<unsigned>& read)
            {
                for (int i = 0; i < 100; ++i)
                {
                    BulletinKey key;
                    try
                    {
                        key.read(*state.first);
                        read.push_back(key.getNumber());
                    }
                    catch (const std::bad_alloc&)
                    {
                        read.push_back(0);
                    }
                }
            };
            readInto(first);
            readInto(second);
            for (std::size_t i = 0; i < 100; ++i)
            {
                if (first[i] != 0 && second[i] != 0)
                {
                    EXPECT_EQ(first[i], second[i]) << i;
                }
            }
        },
        [](auto&, bool) {});
}

TEST_F(MemoryExhaustionSaving, CreatorIsRegisteredOrNotAndARollbackTakesItBack)
{
    failEachAllocation([] { return std::make_unique<SerializableCreators::Rollback>(true); },
                       [](auto&) { new CreatorOf<Node>("a class of an optional module"); },
                       [](auto& rollback, bool threw)
                       {
                           auto& creators = SerializableCreators::getSingleton();
                           EXPECT_EQ(creators.getCreator("a class of an optional module") == nullptr, threw);
                           rollback.reset();
                           EXPECT_EQ(creators.getCreator("a class of an optional module"), nullptr);
                       });
}

// --- Commands and mementos

namespace
{
/// Counts the document up by one; fails where it is not the turn of this command.
class Count : public Command
{
public:
    Count(int& document, int from) : m_document(document), m_from(from) { ++s_count; }
    ~Count() override { --s_count; }

    void execute() override { step(m_from, m_from + 1); }
    void undo() override { step(m_from + 1, m_from); }
    Ztring getLabel() const override { return "step"; }

    static inline int s_count = 0;

private:
    void step(int from, int to)
    {
        EXPECT_EQ(m_document, from);
        m_document = to;
    }

    int& m_document;
    int m_from;
};

/// A document with so many commands to undo and to redo.
struct History
{
    History(int undoable, int redoable)
    {
        menu.observe(controller);
        for (int i = 0; i < undoable + redoable; ++i)
            controller.execute(new Count(document, i));
        for (int i = 0; i < redoable; ++i)
            controller.undo();
        menu.heard.clear();
    }

    void undoAll()
    {
        while (controller.getUndoRedoState().hasUndo())
            controller.undo();
    }

    void redoAll()
    {
        while (controller.getUndoRedoState().hasRedo())
            controller.redo();
    }

    void expectWhole(int count)
    {
        EXPECT_EQ(Count::s_count, count);
        undoAll();
        EXPECT_EQ(document, 0);
        redoAll();
        EXPECT_EQ(document, count);
    }

    int document = 0;
    CommandController controller;
    Recorder menu;
};

using Histories = std::vector<std::pair<int, int>>;

// A stack takes memory for every so many commands only.
const Histories s_histories = {{1, 1}, {2, 0}, {64, 1}, {66, 30}, {66, 31}, {66, 32}, {1, 63}, {1, 64}, {1, 65}};
} // namespace

TEST(MemoryExhaustion, CommandIsExecutedAndKeptOrLeavesNoTrace)
{
    for (const auto& counts : s_histories)
    {
        const int undoable = counts.first;
        const int redoable = counts.second;
        const auto failures = failEachAllocation(
            [=] { return std::make_unique<History>(undoable, redoable); },
            [](auto& history) { history->controller.execute(new Count(history->document, history->document)); },
            [=](auto& history, bool threw)
            {
                if (history->document == undoable)
                {
                    EXPECT_TRUE(threw);
                    history->expectWhole(undoable + redoable);
                }
                else
                    history->expectWhole(undoable + 1);
            });
        EXPECT_GE(failures, 4u);
    }
}

TEST(MemoryExhaustion, UndoneCommandIsNeverLost)
{
    for (const auto& counts : s_histories)
    {
        const int undoable = counts.first;
        const int redoable = counts.second;
        failEachAllocation([=] { return std::make_unique<History>(undoable, redoable); },
                           [](auto& history) { history->controller.undo(); },
                           [=](auto& history, bool threw)
                           {
                               if (!threw)
                               {
                                   EXPECT_EQ(history->document, undoable - 1);
                               }
                               history->expectWhole(undoable + redoable);
                           });
    }
}

TEST(MemoryExhaustion, RedoneCommandIsNeverLost)
{
    for (const auto& counts : s_histories)
    {
        const int undoable = counts.first;
        const int redoable = counts.second;
        if (redoable == 0)
            continue;
        failEachAllocation([=] { return std::make_unique<History>(undoable, redoable); },
                           [](auto& history) { history->controller.redo(); },
                           [=](auto& history, bool threw)
                           {
                               if (!threw)
                               {
                                   EXPECT_EQ(history->document, undoable + 1);
                               }
                               history->expectWhole(undoable + redoable);
                           });
    }
}

TEST(MemoryExhaustion, ClearingAndPruningDeleteCommandsWhateverTheAnnouncementDoes)
{
    failEachAllocation([] { return std::make_unique<History>(3, 2); },
                       [](auto& history) { history->controller.clear(); },
                       [](auto&, bool) { EXPECT_EQ(Count::s_count, 0); });
    failEachAllocation([] { return std::make_unique<History>(1, 2); },
                       [](auto& history) { history->controller.pruneUndo(); },
                       [](auto&, bool) { EXPECT_EQ(Count::s_count, 2); });
}

namespace
{
struct Composite
{
    explicit Composite(int count)
    {
        for (int i = 0; i < count; ++i)
            mementos.add(new Count(document, i));
    }

    int document = 0;
    Mementos mementos;
};
} // namespace

TEST_F(MemoryExhaustionServices, MementoIsAddedOrDeleted)
{
    for (const int count : {0, 1, 2, 3, 4, 8})
    {
        failEachAllocation([=] { return std::make_unique<Composite>(count); },
                           [=](auto& composite) { composite->mementos.add(new Count(composite->document, count)); },
                           [=](auto& composite, bool threw)
                           {
                               EXPECT_EQ(composite->mementos.size(), unsigned(threw ? count : count + 1));
                               EXPECT_EQ(Count::s_count, threw ? count : count + 1);
                               if (composite->mementos.empty())
                                   return;
                               composite->mementos.execute();
                               composite->mementos.undo();
                               EXPECT_EQ(composite->document, 0);
                           });
    }
}

TEST_F(MemoryExhaustionServices, InterruptedCompositeUndoesWhatRanEvenWithoutMemory)
{
    failEachAllocation(
        [this]
        {
            auto composite = std::make_unique<Composite>(5);
            status.setInterrupted();
            return composite;
        },
        [](auto& composite) { composite->mementos.execute(); },
        [this](auto& composite, bool threw)
        {
            status.resetInterrupts();
            EXPECT_EQ(composite->document, 1);
            EXPECT_EQ(composite->mementos.size(), threw ? 5u : 1u);
            EXPECT_EQ(unsigned(Count::s_count), composite->mementos.size());
            if (!threw)
            {
                composite->mementos.undo();
                EXPECT_EQ(composite->document, 0);
            }
        });
}

TEST_F(MemoryExhaustionServices, InterruptedCompositeIsCutWithoutAnyMemory)
{
    class Interrupting : public Memento
    {
    public:
        void execute() override { std::rethrow_exception(m_interruption); }
        void undo() override {}

    private:
        const std::exception_ptr m_interruption = std::make_exception_ptr(Interrupted());
    };

    Composite composite(3);
    composite.mementos.add(new Interrupting);
    composite.mementos.add(new Count(composite.document, 4));
    {
        const FailingAllocation failing(1, Failing::FromThenOn);
        composite.mementos.execute();
    }
    EXPECT_EQ(composite.mementos.size(), 4u);
    EXPECT_EQ(Count::s_count, 3);
    composite.mementos.undo();
    EXPECT_EQ(composite.document, 0);
}

TEST_F(MemoryExhaustionServices, CompositeRunsWithoutAnyMemory)
{
    const auto failures = failEachAllocation([] { return std::make_unique<Composite>(5); },
                                             [](auto& composite)
                                             {
                                                 composite->mementos.execute();
                                                 composite->mementos.undo();
                                                 composite->mementos.redo();
                                             },
                                             [](auto& composite, bool threw)
                                             {
                                                 EXPECT_FALSE(threw);
                                                 EXPECT_EQ(composite->document, 5);
                                             });
    EXPECT_EQ(failures, 0u);
}

// --- Notification

namespace
{
struct Audience
{
    explicit Audience(std::size_t attached, std::size_t all) : listeners(all)
    {
        for (std::size_t i = 0; i < attached; ++i)
            sender.getObservable().attach(listeners[i]);
    }

    void expectBothSidesAgree()
    {
        for (Listener& listener : listeners)
            EXPECT_EQ(listener.isObserving(sender), sender.getObservable().has(listener));
    }

    std::size_t countAttached()
    {
        std::size_t count = 0;
        for (Listener& listener : listeners)
            count += sender.getObservable().has(listener);
        return count;
    }

    Bulletin sender;
    std::vector<Listener> listeners;
};
} // namespace

TEST(MemoryExhaustion, ObserverIsLinkedOnBothSidesOrOnNone)
{
    for (const std::size_t attached : {0u, 1u, 2u, 3u, 4u, 8u, 16u})
    {
        failEachAllocation([=] { return std::make_unique<Audience>(attached, attached + 1); },
                           [](auto& audience) { audience->sender.getObservable().attach(audience->listeners.back()); },
                           [=](auto& audience, bool threw)
                           {
                               audience->expectBothSidesAgree();
                               EXPECT_EQ(audience->countAttached(), threw ? attached : attached + 1);
                               audience->sender.notifyChanged();
                               EXPECT_EQ(audience->listeners.back().heard, threw ? 0 : 1);
                           });
    }
}

TEST(MemoryExhaustion, ObserverOfManyIsLinkedOnBothSidesOrOnNone)
{
    struct Senders
    {
        std::vector<std::unique_ptr<Observable>> senders;
        std::unique_ptr<Observable> last = std::make_unique<Observable>();
        Listener listener;
    };
    for (const std::size_t count : {0u, 1u, 2u, 3u, 4u, 8u})
    {
        failEachAllocation(
            [=]
            {
                auto state = std::make_unique<Senders>();
                for (std::size_t i = 0; i < count; ++i)
                {
                    state->senders.push_back(std::make_unique<Observable>());
                    state->senders.back()->attach(state->listener);
                }
                return state;
            },
            [](auto& state) { state->last->attach(state->listener); },
            [](auto& state, bool threw)
            {
                EXPECT_EQ(state->last->has(state->listener), !threw);
                state->listener.detachAll();
                EXPECT_TRUE(state->last->empty());
            });
    }
}

TEST(MemoryExhaustion, NotificationReachesAllWithoutMemory)
{
    for (const std::size_t attached : {1u, 2u, 3u, 16u, 17u, 40u})
    {
        failEachAllocation([=] { return std::make_unique<Audience>(attached, attached); },
                           [](auto& audience) { audience->sender.notifyChanged(); },
                           [](auto& audience, bool threw)
                           {
                               EXPECT_FALSE(threw);
                               for (const Listener& listener : audience->listeners)
                                   EXPECT_EQ(listener.heard, 1);
                           });
    }
}

TEST(MemoryExhaustion, DetachingAndDyingTakeNoMemory)
{
    for (const std::size_t attached : {1u, 2u, 3u, 17u})
    {
        EXPECT_EQ(failEachAllocation([=] { return std::make_unique<Audience>(attached, attached); },
                                     [](auto& audience)
                                     { audience->sender.getObservable().detach(audience->listeners.front()); },
                                     [](auto& audience, bool) { audience->expectBothSidesAgree(); }),
                  0u);
        EXPECT_EQ(failEachAllocation([=] { return std::make_unique<Audience>(attached, attached); },
                                     [](auto& audience) { audience.reset(); }, [](auto&, bool) {}),
                  0u);
    }
}

// --- Boards

namespace
{
struct Board
{
    explicit Board(std::initializer_list<const char*> names)
    {
        for (const char* const name : names)
            board.add(new Counted(BulletinKey(name)));
        recorder.observe(board);
    }

    BulletinBoard board;
    Recorder recorder;
};

std::unique_ptr<Board> makeBoard()
{
    return std::make_unique<Board>(std::initializer_list<const char*>{"a", "b", "c", "d"});
}

/// The bulletin is not on the board.
std::pair<std::unique_ptr<Board>, Counted*> makeBoardAnd(const char* name)
{
    auto board = makeBoard();
    return {std::move(board), new Counted(BulletinKey(name))};
}
} // namespace

TEST(MemoryExhaustion, BulletinIsOnTheBoardOrDestroyed)
{
    failEachAllocation([] { return makeBoardAnd("e"); }, [](auto& state) { state.first->board.add(state.second); },
                       [](auto& state, bool threw)
                       {
                           auto& [board, added] = state;
                           const bool isOn = board->board.getPtr(BulletinKey("e")) == added;
                           EXPECT_TRUE(isOn || threw);
                           EXPECT_EQ(getKeys(board->board), isOn ? "a b c d e " : "a b c d ");
                           EXPECT_EQ(Counted::s_count, isOn ? 5 : 4);
                           if (!isOn)
                               board->board.add(new Counted(BulletinKey("e")));
                           EXPECT_EQ(board->recorder.heard.size(), isOn && threw ? 0u : 1u);
                       });
}

TEST(MemoryExhaustion, BulletinLentToABoardIsOnItOrTheCallersOwn)
{
    const auto make = []
    {
        auto state = makeBoard();
        return std::make_pair(std::move(state), std::make_unique<Counted>(BulletinKey("e")));
    };
    failEachAllocation(
        make, [](auto& state) { state.first->board.addIgnoreKey(*state.second, BulletinKey("e")); },
        [](auto& state, bool threw)
        {
            auto& [board, added] = state;
            const bool isOn = board->board.getPtr(added->getKey()) == added.get();
            EXPECT_TRUE(isOn || threw);
            EXPECT_EQ(getKeys(board->board), isOn ? "a b c d e " : "a b c d ");
            if (!isOn)
                board->board.addIgnoreKey(*added, added->getKey());
            EXPECT_EQ(board->recorder.heard.size(), isOn && threw ? 0u : 1u);
            static_cast<void>(added.release());
        });
}

TEST(MemoryExhaustion, BulletinTakenOffABoardIsOffWhateverItsObserversDo)
{
    failEachAllocation([] { return std::make_pair(makeBoard(), std::unique_ptr<Bulletin>()); },
                       [](auto& state)
                       {
                           state.second.reset(state.first->board.getPtr(BulletinKey("b")));
                           state.first->board.remove(*state.second);
                       },
                       [](auto& state, bool)
                       {
                           EXPECT_EQ(Counted::s_count, 4);
                           const bool isOff = getKeys(state.first->board) == "a c d ";
                           EXPECT_TRUE(isOff || state.second == nullptr);
                       });
}

TEST(MemoryExhaustion, ReplacementIsOnTheBoardOrDestroyed)
{
    for (const char* const name : {"a", "b", "d", "e"})
    {
        failEachAllocation([=] { return makeBoardAnd(name); },
                           [](auto& state) { state.first->board.addOrReplace(state.second); },
                           [=](auto& state, bool threw)
                           {
                               auto& [board, added] = state;
                               const bool isOn = board->board.getPtr(BulletinKey(name)) == added;
                               EXPECT_TRUE(threw || isOn);
                               EXPECT_EQ(board->board.size(), std::size_t(Counted::s_count));
                               if (!isOn)
                                   board->board.addOrReplace(new Counted(BulletinKey(name)));
                           });
    }
}

TEST(MemoryExhaustion, BulletinThatIsOnTheBoardAlreadyStaysThere)
{
    failEachAllocation([] { return makeBoard(); },
                       [](auto& state) { state->board.add(state->board.getPtr(BulletinKey("b"))); },
                       [](auto& state, bool threw)
                       {
                           EXPECT_TRUE(threw);
                           EXPECT_EQ(getKeys(state->board), "a b c d ");
                           EXPECT_EQ(Counted::s_count, 4);
                       });
}

TEST(MemoryExhaustion, ReplacementIsDestroyedUnlessItIsOnTheBoardWhenAnObserverFails)
{
    const auto replace = [](Board& board, Bulletin& obj, bool addsFirst)
    {
        Recorder failing(
            [&](const Heard& message)
            {
                if (message.operation != "removed")
                    return;
                if (addsFirst)
                    board.board.add(&obj);
                throw std::bad_alloc();
            });
        failing.observe(board.board);
        EXPECT_THROW(board.board.replace(&obj), std::bad_alloc);
    };
    for (const bool addsFirst : {false, true})
    {
        const auto [board, obj] = makeBoardAnd("b");
        replace(*board, *obj, addsFirst);
        EXPECT_EQ(Counted::s_count, addsFirst ? 4 : 3);
        EXPECT_EQ(getKeys(board->board), addsFirst ? "a b c d " : "a c d ");
    }
    // One that was to replace itself is off the board and the caller's.
    const auto board = makeBoard();
    const std::unique_ptr<Bulletin> same(board->board.getPtr(BulletinKey("b")));
    replace(*board, *same, false);
    EXPECT_EQ(Counted::s_count, 4);
    EXPECT_EQ(getKeys(board->board), "a c d ");
}

TEST(MemoryExhaustion, AdoptedBulletinThatRefusesDeletionIsOnTheBoardOrDeleted)
{
    class Refusing : public Counted
    {
    public:
        using Counted::Counted;
        bool canDelete() override { return m_isOnBoard; }
        void settle() { m_isOnBoard = true; }

    private:
        bool m_isOnBoard = false;
    };
    failEachAllocation(
        makeBoard, [](auto& state) { state->board.adopt(std::make_unique<Refusing>(BulletinKey("e"))).settle(); },
        [](auto& state, bool)
        {
            if (auto* const refusing = dynamic_cast<Refusing*>(state->board.getPtr(BulletinKey("e"))))
                refusing->settle(); // an observer may have failed
            EXPECT_EQ(state->board.size(), std::size_t(Counted::s_count));
        });
}

TEST(MemoryExhaustion, BulletinThatIsAddedBesideAnAdoptedOneIsOnTheBoardOrDestroyed)
{
    class Escorting : public BulletinBoard
    {
    public:
        void add(Bulletin* obj) override
        {
            BulletinBoard::add(new Counted);
            BulletinBoard::add(obj);
        }
    };
    failEachAllocation([] { return std::make_unique<Escorting>(); },
                       [](auto& board) { board->adopt(std::make_unique<Counted>(BulletinKey("a"))); },
                       [](auto& board, bool threw)
                       {
                           EXPECT_EQ(board->size(), std::size_t(Counted::s_count));
                           EXPECT_TRUE(threw || board->size() == 2);
                       });
}

TEST(MemoryExhaustion, CopyOfABoardIsWholeOrAbsent)
{
    failEachAllocation(
        []
        {
            auto state = makeBoard();
            state->board.incrementUse();
            return std::make_pair(std::move(state), std::unique_ptr<BulletinBoard>());
        },
        [](auto& state) { state.second = std::make_unique<BulletinBoard>(state.first->board); },
        [](auto& state, bool threw)
        {
            EXPECT_EQ(Counted::s_count, threw ? 4 : 8);
            EXPECT_EQ(state.second == nullptr, threw);
            if (state.second)
            {
                EXPECT_EQ(getKeys(*state.second), "a b c d ");
            }
        });
}

TEST(MemoryExhaustion, DeletingAllLeavesNoDeadEntry)
{
    failEachAllocation(
        []
        {
            auto state = makeBoard();
            for (const auto& [number, bulletin] : state->board)
                state->recorder.observe(*bulletin);
            return state;
        },
        [](auto& state) { state->board.deleteAll(); },
        [](auto& state, bool threw)
        {
            EXPECT_EQ(state->board.size(), std::size_t(Counted::s_count));
            EXPECT_EQ(state->board.empty(), !threw);
            for (const auto& [number, bulletin] : state->board)
                EXPECT_EQ(bulletin->getKey().getNumber(), number);
            state->board.deleteAll();
            EXPECT_EQ(Counted::s_count, 0);
        });
}

TEST(MemoryExhaustion, ServiceIsCreatedOnTheBoardOrNotAtAll)
{
    const auto failures = failEachAllocation(
        makeBoard, [](auto& state) { state->board.template getOrCreate<Counted>(); },
        [](auto& state, bool)
        {
            EXPECT_EQ(state->board.size(), std::size_t(Counted::s_count));
            Counted& service = state->board.template getOrCreate<Counted>();
            EXPECT_EQ(state->board.template getPtr<Counted>(), &service);
        });
    EXPECT_GE(failures, 4u);
}

TEST(MemoryExhaustion, UseIsCountedOrNot)
{
    for (const bool isInUse : {false, true})
    {
        failEachAllocation(
            [=]
            {
                auto state = makeBoard();
                if (isInUse)
                    state->board.incrementUse();
                return state;
            },
            [](auto& state) { state->board.incrementUse(); },
            [=](auto& state, bool threw)
            {
                if (!threw)
                {
                    EXPECT_TRUE(state->board.isInUse());
                }
                const int uses = int(isInUse) + int(!threw);
                for (int left = uses; left > 0; --left)
                    EXPECT_EQ(state->board.decrementUse(), left == 1);
                EXPECT_FALSE(state->board.isInUse());
            });
    }
}

TEST(MemoryExhaustion, ListsAndTheirDifferencesAreWholeOrAsBefore)
{
    struct Lists
    {
        Lists()
        {
            for (Bulletin& bulletin : bulletins)
                first.append(&bulletin);
            second.append(&bulletins[0]);
        }

        std::vector<Bulletin> bulletins{6};
        OrderedBulletins first{BulletinKey()};
        OrderedBulletins second{BulletinKey()};
    };
    const auto make = [] { return std::make_unique<Lists>(); };
    failEachAllocation(
        make, [](auto& lists) { lists->second.add(lists->first); },
        [](auto& lists, bool threw) { EXPECT_EQ(lists->second.size(), threw ? 1u : 7u); });
    failEachAllocation(
        make,
        [](auto& lists)
        {
            const OrderedComparator comparator(lists->first, lists->second);
            EXPECT_EQ(comparator.getOnlyInFirst().size(), 5u);
        },
        [](auto& lists, bool)
        {
            EXPECT_EQ(lists->first.size(), 6u);
            EXPECT_EQ(lists->second.size(), 1u);
        });
}

// --- Names, pools and registries

TEST(MemoryExhaustion, NameAndAliasAreRegisteredWithTheirNumberOrNotAtAll)
{
    const std::string name = "a name too long to be kept without a block";
    const std::string alias = "an alias too long to be kept without a block";
    const auto failures =
        failEachAllocation([] { return std::make_unique<NamedKeys>(); }, [&](auto& keys) { keys->getKey(name, alias); },
                           [&](auto& keys, bool)
                           {
                               const unsigned number = keys->getKey(name, alias);
                               EXPECT_EQ(keys->getName(number), name);
                               EXPECT_EQ(keys->getKey(alias, ""), number);
                               // Numbers that nobody got have no name.
                               for (unsigned before = number - 3; before < number; ++before)
                                   EXPECT_EQ(keys->getName(before), "");
                           });
    EXPECT_GE(failures, 10u);
}

TEST(MemoryExhaustion, PoolIsAsItWasAndTakesBlocksBackWithoutMemory)
{
    static Pool s_pool("MemoryExhaustion", 16, Pool::Chunk10);
    std::vector<void*> blocks;
    blocks.reserve(100);
    for (const int count : {0, 10, 20})
    {
        failEachAllocation(
            [&]
            {
                for (int i = 0; i < count; ++i)
                    blocks.push_back(s_pool.newObject());
                return 0;
            },
            [&](int) { blocks.push_back(s_pool.newObject()); },
            [&](int, bool threw)
            {
                EXPECT_EQ(blocks.size(), std::size_t(threw ? count : count + 1));
                EXPECT_EQ(std::set<void*>(blocks.begin(), blocks.end()).size(), blocks.size());
                {
                    const FailingAllocation none(1, Failing::FromThenOn);
                    for (void* const block : blocks)
                        s_pool.deleteObject(block);
                }
                EXPECT_FALSE(FailingAllocation::hasFailed());
                blocks.clear();
                s_pool.clear();
            });
    }
}

namespace
{
class CountingRule : public Rule
{
public:
    CountingRule() { ++s_count; }
    ~CountingRule() override { --s_count; }
    void apply(Bulletin&, Bulletin*) override { ++s_applied; }

    static inline int s_count = 0;
    static inline int s_applied = 0;
};
} // namespace

TEST(MemoryExhaustion, RuleIsOwnedFromTheFirstMoment)
{
    for (const int count : {0, 1, 2, 4})
    {
        failEachAllocation(
            [=]
            {
                auto rules = std::make_unique<Rules>();
                for (int i = 0; i < count; ++i)
                    rules->add(BulletinKey("a"), new CountingRule);
                return rules;
            },
            [](auto& rules) { rules->add(BulletinKey("a"), new CountingRule); },
            [=](auto& rules, bool threw)
            {
                const int expected = threw ? count : count + 1;
                EXPECT_EQ(CountingRule::s_count, expected);
                Bulletin target;
                CountingRule::s_applied = 0;
                rules->execute(BulletinKey("a"), target, nullptr);
                EXPECT_EQ(CountingRule::s_applied, expected);
            });
    }
}

TEST(MemoryExhaustion, ToolTipIsThereOrCanBeGivenAgain)
{
    failEachAllocation([] { return std::make_unique<ToolTips>(); },
                       [](auto& tips) { tips->add(BulletinKey("a"), "a text long enough to need a block"); },
                       [](auto& tips, bool threw)
                       {
                           EXPECT_EQ(tips->get(BulletinKey("a")).empty(), threw);
                           tips->add(BulletinKey("a"), "a text long enough to need a block");
                           EXPECT_EQ(tips->get(BulletinKey("a")).toUtf8(), "a text long enough to need a block");
                       });
}

// --- Tasks

namespace
{
/// A task of some steps that takes no memory.
class Steps : public Task
{
public:
    explicit Steps(int steps) : m_left(steps) { ++s_count; }
    ~Steps() override { --s_count; }

    void performAction() override
    {
        --m_left;
        ++s_steps;
    }
    bool repeat() override { return m_left > 0; }

    static inline int s_count = 0;
    static inline int s_steps = 0;

private:
    int m_left;
};

class BusyLight : public TasksListener
{
public:
    void tasksChanged(bool busy) override { isOn = busy; }
    void enableMenu(bool) override {}

    bool isOn = false;
};

struct MemoryExhaustionTasks : MemoryExhaustionServices
{
    void TearDown() override { runAll(); }

    static void runAll()
    {
        while (Tasks::getSingleton()->onIdle() || OtherTasks::getSingleton()->onIdle())
            ;
    }

    static int takeSteps() { return std::exchange(Steps::s_steps, 0); }
};

// So many that a queue takes memory somewhere.
constexpr int s_manyTasks = 130;
} // namespace

TEST_F(MemoryExhaustionTasks, TaskIsQueuedOrDeleted)
{
    for (const bool isOther : {false, true})
    {
        failEachAllocation([] { return 0; },
                           [=](int)
                           {
                               for (int i = 0; i < s_manyTasks; ++i)
                               {
                                   auto* const task = new Steps(1);
                                   isOther ? OtherTasks::getSingleton()->add(task) : Tasks::getSingleton()->add(task);
                               }
                           },
                           [](int, bool threw)
                           {
                               const int queued = Steps::s_count;
                               EXPECT_EQ(queued < s_manyTasks, threw);
                               runAll();
                               EXPECT_EQ(takeSteps(), queued);
                               EXPECT_EQ(Steps::s_count, 0);
                           });
    }
}

TEST_F(MemoryExhaustionTasks, QueuedTasksRunAllTheirStepsAndListenersHearTheEnd)
{
    failEachAllocation(
        []
        {
            for (int i = 0; i < 3; ++i)
                Tasks::getSingleton()->add(new Steps(70));
            auto light = std::make_unique<BusyLight>();
            Tasks::getSingleton()->attach(light.get());
            return light;
        },
        [](auto&) { runAll(); },
        [](auto& light, bool)
        {
            runAll();
            EXPECT_EQ(takeSteps(), 210);
            EXPECT_EQ(Steps::s_count, 0);
            EXPECT_FALSE(light->isOn);
            Tasks::getSingleton()->detach(light.get());
        });
}

TEST_F(MemoryExhaustionTasks, OtherTasksRunAllTheirSteps)
{
    failEachAllocation(
        []
        {
            for (int i = 0; i < 3; ++i)
                OtherTasks::getSingleton()->add(new Steps(70));
            return 0;
        },
        [](int) { runAll(); },
        [](int, bool)
        {
            runAll();
            EXPECT_EQ(takeSteps(), 210);
            EXPECT_EQ(Steps::s_count, 0);
        });
}

TEST_F(MemoryExhaustionTasks, ImmediateTaskRunsOrIsDeletedAndKeepsNothingFromRunning)
{
    failEachAllocation(
        []
        {
            Tasks::getSingleton()->add(new Steps(3));
            return 0;
        },
        [](int) { Tasks::getSingleton()->addImmediate(new Steps(5)); },
        [](int, bool threw)
        {
            runAll();
            const int steps = takeSteps();
            EXPECT_TRUE(steps == 8 || (threw && steps == 3)) << steps;
            EXPECT_EQ(Steps::s_count, 0);
        });
}

TEST_F(MemoryExhaustionTasks, BatchRunsAllItsSteps)
{
    for (const bool interleave : {false, true})
    {
        failEachAllocation(
            [=]
            {
                auto batch = std::make_unique<BatchTask>(interleave);
                for (int i = 0; i < 3; ++i)
                    batch->add(new Steps(70));
                return batch;
            },
            [](auto& batch)
            {
                while (batch->repeat())
                    batch->execute();
            },
            [this](auto& batch, bool threw)
            {
                EXPECT_FALSE(threw);
                std::exchange(log->messages, {});
                while (batch->repeat())
                    batch->execute();
                EXPECT_EQ(takeSteps(), 210);
                EXPECT_EQ(Steps::s_count, 0);
            });
        failEachAllocation([=] { return std::make_unique<BatchTask>(interleave); },
                           [](auto& batch)
                           {
                               for (int i = 0; i < s_manyTasks; ++i)
                                   batch->add(new Steps(1));
                           },
                           [](auto&, bool threw) { EXPECT_EQ(Steps::s_count < s_manyTasks, threw); });
    }
}

namespace
{
class FailingTask : public Task
{
public:
    explicit FailingTask(std::function<void()> action) : m_action(std::move(action)) {}
    void performAction() override { m_action(); }

private:
    std::function<void()> m_action;
};

class ErrorCounter : public Task::ErrorInterruptListener
{
public:
    void onError(Problem&) override { ++errors; }

    int errors = 0;
};
} // namespace

TEST_F(MemoryExhaustionTasks, FailingStepNeverLetsAnythingOut)
{
    failEachAllocation(
        []
        {
            auto task = std::make_unique<FailingTask>([] { Problem::throwProblem("failed"); });
            return std::make_pair(std::move(task), std::make_unique<ErrorCounter>());
        },
        [](auto& state) { state.first->execute(); },
        [this](auto& state, bool threw)
        {
            EXPECT_FALSE(threw);
            EXPECT_LE(state.second->errors, 1);
            state.second->errors = 0;
            state.first->execute();
            EXPECT_EQ(state.second->errors, 1);
            std::exchange(log->messages, {});
        });
    failEachAllocation([] { return 0; }, [](int) { ErrorCounter(); }, [](int, bool) {});
}

TEST_F(MemoryExhaustionTasks, ListenersAreAttachedOrNot)
{
    failEachAllocation([] { return std::vector<BusyLight>(5); },
                       [](auto& lights)
                       {
                           std::size_t attached = 0;
                           try
                           {
                               for (; attached < lights.size(); ++attached)
                                   Tasks::getSingleton()->attach(&lights[attached]);
                           }
                           catch (...)
                           {
                               for (std::size_t i = 0; i < attached; ++i)
                                   Tasks::getSingleton()->detach(&lights[i]);
                               throw;
                           }
                           for (BusyLight& light : lights)
                               Tasks::getSingleton()->detach(&light);
                       },
                       [](auto&, bool) { EXPECT_EQ(Tasks::getSingleton()->onIdle(), false); });
}

// --- Services

TEST_F(MemoryExhaustionServices, ArgumentsAreRecordedOrNot)
{
    failEachAllocation([] { return std::make_unique<Args>("-first=a -second", ' '); },
                       [](auto& args) { args->add("-an-option-that-needs-a-block=a value that needs a block"); },
                       [](auto& args, bool threw)
                       {
                           EXPECT_EQ(args->get("-first"), "a");
                           EXPECT_EQ(args->size(), threw ? 2u : 3u);
                           EXPECT_EQ(args->matches("-an-option-that-needs-a-block", "a value that needs a block"),
                                     !threw);
                       });
    failEachAllocation([] { return 0; },
                       [](int)
                       {
                           const Args args("-first=a value -second", ' ');
                           EXPECT_TRUE(args.has("value"));
                       },
                       [](int, bool) {});
}

TEST_F(MemoryExhaustionServices, UnrecognizedOptionIsReportedOrStaysToBeReported)
{
    failEachAllocation(
        [] { return std::make_unique<Args>("-b=2 -a word", ' '); }, [](auto& args) { args->checkUnrecognized(); },
        [this](auto& args, bool)
        {
            if (args->size() == 3)
                args->checkUnrecognized();
            EXPECT_EQ(args->size(), 1u);
            // A log that fails is the log's own affair.
            if (!log->messages.empty())
            {
                EXPECT_EQ(log->messages.back().second, "Unrecognized option: -a\nUnrecognized option: -b=2\n");
            }
            std::exchange(log->messages, {});
        });
}

TEST_F(MemoryExhaustionServices, FormHoldsABeginningOfTheWholeBody)
{
    const TemporaryDirectory directory;
    const Ztring path(directory.write("data", std::string(10000, '\xFF')));
    Array<char> data;
    for (int i = 0; i < 5000; ++i)
        data.push_back('a');
    const auto build = [&](FormDataPoster& form)
    {
        form.addField("field", "value");
        form.addFile("array", "array.txt", "text/plain", data);
        form.addFile("file", "file.txt", "text/plain", Kel::File(path));
        Ztring response;
        form.postTo("www.example.org", "/upload", response);
    };
    FormDataPoster whole;
    build(whole);
    const std::wstring expected = whole.getBody().wStdStr();
    const auto failures =
        failEachAllocation([] { return std::make_unique<FormDataPoster>(); }, [&](auto& form) { build(*form); },
                           [&](auto& form, bool threw)
                           {
                               const std::wstring body = form->getBody().wStdStr();
                               EXPECT_TRUE(expected.starts_with(body));
                               EXPECT_TRUE(threw || body == expected);
                               std::exchange(platform->calls, {});
                               std::exchange(platform->postedBody, {});
                           });
    EXPECT_GT(failures, 50u);
}

TEST_F(MemoryExhaustionServices, DestructorsOfGuardsTakeTheirFailuresForThemselves)
{
    const TemporaryDirectory directory;
    const Ztring path(directory / "model");
    const auto expectQuiet = [&](auto makeGuard)
    {
        failEachAllocation(
            makeGuard, [](auto& guard) { guard.reset(); },
            [this](auto&, bool threw)
            {
                EXPECT_FALSE(threw);
                std::exchange(platform->calls, {});
            });
    };
    expectQuiet(
        [&]
        {
            auto writer = std::make_unique<FileWriter>();
            writer->open(path, false);
            return writer;
        });
    expectQuiet([&] { return std::make_unique<AutoFileDelete>(path); });
    expectQuiet([&] { return std::make_unique<StdOutErr>(path, path); });
    expectQuiet(
        []
        {
            auto state = makeBoard();
            for (const auto& [number, bulletin] : state->board)
                state->recorder.observe(*bulletin);
            return state;
        });
}

// --- Texts

namespace
{
const std::string s_text = "a text of %1 and %2 that is long enough to need a block";

void expectOldOrNew(const std::function<void(Ztring&)>& change)
{
    Ztring expected(s_text);
    change(expected);
    failEachAllocation([] { return std::make_unique<Ztring>(s_text); }, [&](auto& text) { change(*text); },
                       [&](auto& text, bool threw)
                       {
                           EXPECT_EQ(text->toUtf8(), threw ? s_text : expected.toUtf8());
                           if (threw)
                               change(*text);
                           EXPECT_EQ(text->toUtf8(), expected.toUtf8());
                       });
}
} // namespace

TEST(MemoryExhaustion, TextIsTheOldOrTheNewOne)
{
    const Ztring other("another text, of \xC3\xA9, that needs a block");
    const Ztring longer(std::string(1000, 'x'));
    Ztring::Replacements pairs;
    pairs.push_back({"a", "the letter after no other"});
    pairs.push_back({"other", "an other one, which makes the text longer"});
    expectOldOrNew([&](Ztring& text) { text = longer; });
    expectOldOrNew([&](Ztring& text) { text.append(other); });
    expectOldOrNew([&](Ztring& text) { text += 'c'; });
    expectOldOrNew([&](Ztring& text) { text += "and so on, and so on, and so on"; });
    expectOldOrNew([&](Ztring& text) { text.insert(3, 100, 'c'); });
    expectOldOrNew([&](Ztring& text) { text.remove('t'); });
    expectOldOrNew([&](Ztring& text) { text.makeText(); });
    expectOldOrNew([&](Ztring& text) { text.trimText(); });
    expectOldOrNew([&](Ztring& text) { text.truncateAfter("text"); });
    expectOldOrNew([&](Ztring& text) { text.toLowerCase(); });
    expectOldOrNew([&](Ztring& text) { text.argReplace(longer); });
    expectOldOrNew([&](Ztring& text) { text.targetReplace("text", longer); });
    expectOldOrNew([&](Ztring& text) { text.replace("text", 1234567); });
    expectOldOrNew([&](Ztring& text) { text.replace("text", 12345678901234567); });
    expectOldOrNew([&](Ztring& text) { text.replaceAllIn(pairs); });
    expectOldOrNew([&](Ztring& text) { Ztring::append(1.5, text); });
    expectOldOrNew([&](Ztring& text) { Ztring::append("longer than what a stream keeps in itself", text); });
    expectOldOrNew([&](Ztring& text) { text.fromUtf8("\xC3\xA9t\xC3\xA9 and a long text that needs a block"); });
    expectOldOrNew([&](Ztring& text) { text.fromAscii(std::string(100, '\xFF')); });
}

TEST(MemoryExhaustion, ConversionsOfATextLeaveItAsItIs)
{
    const Ztring text("one that is long enough");
    Ztring wide;
    wide.fromUtf8("\xC3\xA9t\xC3\xA9, long enough to need a block");
    const auto convert = [&](const Ztring& source)
    {
        EXPECT_FALSE(source.toUtf8().empty());
        EXPECT_FALSE(source.ascii().empty());
        EXPECT_FALSE(source.wStdStr().empty());
        EXPECT_FALSE(source.asStringScript().empty());
        static_cast<void>(source.str());
        const Ztring copy(source);
        EXPECT_EQ(copy, source);
        EXPECT_TRUE(source.has("long"));
    };
    failEachAllocation([] { return 0; }, [&](int) { convert(text); }, [](int, bool) {});
    failEachAllocation([] { return 0; }, [&](int) { convert(wide); }, [](int, bool) {});
}

TEST(MemoryExhaustion, ProblemKeepsItsMessagesOrGetsTheContext)
{
    const auto make = []
    {
        auto problem = std::make_unique<Problem>("the first message, which needs a block");
        problem->annotate("the second message, which needs a block");
        return problem;
    };
    failEachAllocation(
        make, [](auto& problem) { problem->annotate("the third message, which needs a block"); },
        [](auto& problem, bool threw)
        {
            const std::string before = "the second message, which needs a block\n"
                                       "the first message, which needs a block";
            const std::string after = "the third message, which needs a block\n"
                                      "the first message, which needs a block\n"
                                      "the second message, which needs a block";
            EXPECT_EQ(problem->getMessage().toUtf8(), threw ? before : after);
        });
}
