// SPDX-License-Identifier: MIT
// What is left of a document when memory runs out: every allocation of an operation fails once, alone and with all
// after it.
#include <truss/support/savingtest.h>

#include <support/failingallocation.h>

#include "truss/analysis/response.h"
#include "truss/edits/compositecommand.h"
#include "truss/exchange/csvimport.h"
#include "truss/script/groupededit.h"

#include <kel/branding.h>
#include <kel/commandcontroller.h>
#include <kel/undoredostate.h>
#include <kel/writer.h>

#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

// --- Saving and opening

namespace
{
/// A document with names so long that each takes a block, saved as a.truss. No progress is shown, which would take
/// memory at any time.
class MemoryExhaustion : public SavingTest
{
protected:
    MemoryExhaustion()
    {
        status.setUpdateInterval(std::numeric_limits<unsigned>::max());
        import("node,the-node-on-the-left,0,0,0\nnode,the-node-in-the-middle,1,1,0\nnode,the-node-on-the-right,2,0,0\n"
               "bar,the-bar-on-the-left,the-node-on-the-left,the-node-in-the-middle,1,10,100\n"
               "bar,the-bar-on-the-right,the-node-in-the-middle,the-node-on-the-right,2,20,200\n"
               "support,the-node-on-the-left,1,1,1\nsupport,the-node-in-the-middle,0,0,1\n"
               "load,the-node-in-the-middle,1,2,3\nload,the-node-in-the-middle,4,5,6\n");
        save("a.truss");
        old = directory.read("a.truss");
    }

    void reopen() { document.replace(truss::DocumentFile::open(file("a.truss"))); }
    void forget() { document.replace(truss::BulletinPtr<truss::Model>(new truss::Model)); }

    /// What the document saves, which can be opened and is then the same, with every name leading to its entity.
    std::string saved()
    {
        model().forEach<truss::NamedEntity>([this](truss::NamedEntity& entity)
                                            { EXPECT_EQ(model().find(entity.getName()), &entity); });
        std::ostringstream out; // a save also waits for the disk, which is too slow for so many
        out.precision(std::numeric_limits<double>::max_digits10);
        Writer(out, Branding::getSingleton()->getProduct(), false).writeObj(&model());
        directory.write("saved.truss", out.str());
        EXPECT_EQ(toCsv(*truss::DocumentFile::open(file("saved.truss"))), toCsv());
        return afterFirstLine(out.str());
    }

    static bool hasUndo()
    {
        return DynamicFactory::getSingleton().getOrCreate<CommandController>().getUndoRedoState().hasUndo();
    }

    void undoAll()
    {
        while (hasUndo())
            document.undo();
    }

    /// Lets each allocation of an edit fail, of its undoing and of its redoing. The document is then as before or as
    /// after, and all that is left of the history can be undone.
    void failEdit(const std::function<std::unique_ptr<Command>()>& make)
    {
        reopen();
        const std::string before = saved();
        document.execute(make());
        const std::string after = saved();
        const std::function<void()> edit = [&] { document.execute(make()); };
        failStep([] {}, edit, before, after);
        failStep(
            edit, [this] { document.undo(); }, after, before);
        const auto prepareRedo = [&]
        {
            edit();
            document.undo();
        };
        failStep(
            prepareRedo, [this] { document.redo(); }, before, after);
    }

private:
    void failStep(const std::function<void()>& prepare, const std::function<void()>& step, const std::string& before,
                  const std::string& after)
    {
        const auto failures = failEachAllocation(
            [&]
            {
                reopen();
                prepare();
                return 0;
            },
            [&](int) { step(); },
            [&](int, bool threw)
            {
                const std::string now = saved();
                EXPECT_TRUE(now == after || (threw && now == before)) << now;
                undoAll();
                const std::string undone = saved();
                EXPECT_TRUE(undone == before || undone == after) << undone;
                forget();
            });
        s_failures += failures;
    }

protected:
    static inline std::size_t s_failures = 0;
};
} // namespace

TEST_F(MemoryExhaustion, AFileHoldsTheOldOrTheNewDocumentWhole)
{
    edit("add node a-node-that-was-added-late 1 2 3");
    save("new.truss");
    edited = directory.read("new.truss");
    const auto failures = failEachAllocation(
        [this]
        {
            restore();
            return 0;
        },
        [this](int) { save("a.truss"); },
        [this](int, bool threw)
        {
            EXPECT_TRUE(isNew() || (threw && isOld()));
            EXPECT_FALSE(toCsv(*truss::DocumentFile::open(file("a.truss"))).empty());
            save("a.truss");
            EXPECT_TRUE(isNew());
            EXPECT_FALSE(hasTemporary());
        });
    EXPECT_GT(failures, 50u);
}

TEST_F(MemoryExhaustion, OpeningFailsOrGivesTheWholeAndLeavesNothingElse)
{
    const std::string csv = toCsv();
    struct Opening
    {
        truss::BulletinPtr<truss::Model> model;
    };
    const auto failures =
        failEachAllocation([] { return Opening(); },
                           [this](Opening& opening) { opening.model = truss::DocumentFile::open(file("a.truss")); },
                           [&](Opening& opening, bool threw)
                           {
                               EXPECT_EQ(opening.model == nullptr, threw);
                               if (opening.model != nullptr)
                               {
                                   EXPECT_EQ(toCsv(*opening.model), csv);
                               }
                               EXPECT_TRUE(isOld());
                               EXPECT_EQ(toCsv(*truss::DocumentFile::open(file("a.truss"))), csv);
                           });
    EXPECT_GT(failures, 50u);
}

TEST_F(MemoryExhaustion, ADocumentIsReplacedOrStaysWithItsObservers)
{
    failEachAllocation(
        [this]
        {
            reopen();
            edit("delete the-node-in-the-middle");
            return truss::DocumentFile::open(file("a.truss"));
        },
        [this](auto& opened) { document.replace(std::move(opened)); },
        [this](auto& opened, bool threw)
        {
            EXPECT_EQ(model().size(), threw ? 3u : 9u);
            document.setResponse(std::make_unique<truss::Response>(truss::Structure(model())));
            edit("move the-node-on-the-left 5 5 5");
            EXPECT_EQ(document.getResponse(), nullptr);
            opened.reset();
            forget();
        });
}

// --- Edits

TEST_F(MemoryExhaustion, AnEditIsDoneUndoneAndRedoneWholeOrNotAtAll)
{
    for (const char* line :
         {"delete the-node-in-the-middle", "delete the-bar-on-the-left", "move the-node-in-the-middle 1 5 0",
          "area the-bar-on-the-left 7", "modulus the-bar-on-the-left 9", "add node another-node-with-a-long-name 1 2 3",
          "add bar another-bar-with-a-long-name the-node-on-the-left the-node-on-the-right 1 2",
          "add support the-node-on-the-right 1 1 1", "add load the-node-on-the-right 1 2 3"})
    {
        SCOPED_TRACE(line);
        failEdit([this, line] { return parse(line); });
    }
    EXPECT_GT(s_failures, 200u);
}

TEST_F(MemoryExhaustion, AnImportIsDoneUndoneAndRedoneWholeOrNotAtAll)
{
    const Kel::File lines(directory.write("more.csv", "node,another-node-with-a-long-name,0,0,5\n"
                                                      "node,one-more-node-with-a-long-name,0,5,5\n"
                                                      "bar,another-bar-with-a-long-name,another-node-with-a-long-name,"
                                                      "one-more-node-with-a-long-name,1,2\n"));
    failEdit(
        [&]
        {
            truss::CsvImport reading(model(), lines);
            while (reading.readLines(1000))
                ;
            return reading.takeCommand();
        });
}

TEST_F(MemoryExhaustion, AGroupOfEditsIsDoneUndoneAndRedoneWholeOrNotAtAll)
{
    failEdit(
        [this]
        {
            auto group = std::make_unique<truss::CompositeCommand>("Group");
            const auto add = [&](std::vector<std::string> words) {
                group->add(new truss::GroupedEdit(model(), {"here", std::move(words)}));
            };
            add({"delete", "the-bar-on-the-left"});
            add({"add", "node", "another-node-with-a-long-name", "7", "7", "7"});
            add({"move", "another-node-with-a-long-name", "1", "1", "1"});
            add({"move", "another-node-with-a-long-name", "2", "2", "2"});
            add({"delete", "the-node-in-the-middle"});
            return group;
        });
}
