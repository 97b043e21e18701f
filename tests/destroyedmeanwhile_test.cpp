// SPDX-License-Identifier: MIT
// Senders, boards and receivers that are destroyed while the others are told of something. That nothing freed is
// touched is for the sanitized build to see.
#include <kel/bulletin.h>
#include <kel/bulletinboard.h>
#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/observable.h>

#include "support/recorder.h"
#include "support/tracked.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

using testing::ElementsAre;

namespace
{
/// Two receivers of everything, so that a pass goes on after the first.
struct DestroyedMeanwhile : testing::Test
{
    void observe(Bulletin& bulletin)
    {
        first.observe(bulletin);
        second.observe(bulletin);
    }

    /// Does it once, at the first message either hears.
    void atFirst(const std::function<void()>& action)
    {
        first.during = second.during = [this, action](const Heard&)
        {
            if (!std::exchange(isDone, true))
                action();
        };
    }

    std::size_t countHeard() const { return first.heard.size() + second.heard.size(); }

    Story story;
    Recorder first;
    Recorder second;
    bool isDone = false;
};
} // namespace

TEST_F(DestroyedMeanwhile, BulletinInsideItsOwnChange)
{
    auto* const bulletin = new Tracked(story, "a");
    observe(*bulletin);
    atFirst([=] { delete bulletin; });
    bulletin->notifyChanged();
    EXPECT_EQ(countHeard(), 1u);
    EXPECT_THAT(story, ElementsAre("~a"));
}

TEST_F(DestroyedMeanwhile, BulletinInsideItsOwnDestruction)
{
    auto* const bulletin = new Tracked(story, "a");
    observe(*bulletin);
    atFirst([=] { Bulletin::destroy(bulletin, false); });
    Bulletin::destroy(bulletin, false);
    EXPECT_THAT(story, ElementsAre("a?", "a!", "a?", "a!", "~a"));
    EXPECT_EQ(countHeard(), 3u);
}

TEST_F(DestroyedMeanwhile, BulletinInsideItsOwnDestructionThatThenFails)
{
    auto* const bulletin = new Tracked(story, "a");
    observe(*bulletin);
    atFirst(
        [=]
        {
            delete bulletin;
            throw std::runtime_error("too late");
        });
    EXPECT_THROW(Bulletin::destroy(bulletin, false), std::runtime_error);
    EXPECT_THAT(story, ElementsAre("a?", "a!", "~a"));
}

TEST_F(DestroyedMeanwhile, MemberInsideTheDeletionOfAll)
{
    for (const bool isFailing : {false, true})
    {
        BulletinBoard board;
        auto* const a = new Tracked(story, "a");
        board.add(a);
        board.add(new Tracked(story, "b"));
        observe(*a);
        isDone = false;
        atFirst(
            [=]
            {
                delete a;
                if (isFailing)
                    throw std::runtime_error("too late");
            });
        if (isFailing)
        {
            EXPECT_THROW(board.deleteAll(), std::runtime_error);
            EXPECT_EQ(board.size(), 1u);
        }
        board.deleteAll();
        EXPECT_TRUE(board.empty());
        EXPECT_THAT(std::exchange(story, {}), ElementsAre("a?", "a!", "~a", "b?", "b!", "~b"));
    }
}

TEST_F(DestroyedMeanwhile, MemberInsideTheDestructionOfItsBoard)
{
    for (const bool isFailing : {false, true})
    {
        {
            BulletinBoard board;
            auto* const a = new Tracked(story, "a");
            board.add(a);
            board.add(new Tracked(story, "b"));
            observe(*a);
            isDone = false;
            atFirst(
                [=]
                {
                    delete a;
                    if (isFailing)
                        throw std::runtime_error("too late");
                });
        }
        EXPECT_THAT(std::exchange(story, {}), ElementsAre("a?", "a!", "~a", "b?", "b!", "~b"));
    }
}

TEST_F(DestroyedMeanwhile, BoardInsideAnAddition)
{
    auto* const board = new BulletinBoard;
    observe(*board);
    atFirst([=] { delete board; });
    board->add(new Tracked(story, "a"));
    EXPECT_EQ(countHeard(), 1u);
    EXPECT_THAT(story, ElementsAre("a?", "a!", "~a"));
}

TEST_F(DestroyedMeanwhile, BoardInsideARemoval)
{
    auto* const board = new BulletinBoard;
    Tracked bulletin(story, "a");
    board->add(&bulletin);
    observe(*board);
    atFirst([=] { delete board; });
    board->remove(bulletin);
    EXPECT_EQ(countHeard(), 1u);
    EXPECT_TRUE(story.empty());
}

TEST_F(DestroyedMeanwhile, BoardInsideAReplacement)
{
    for (const bool isLater : {false, true})
    {
        auto* const board = new BulletinBoard;
        auto* const a = new Tracked(story, "a");
        board->add(a);
        if (isLater)
            observe(*a);
        else
            observe(*board);
        isDone = false;
        atFirst([=] { delete board; });
        auto* const b = new Tracked(story, "b");
        b->setKey(a->getKey());
        board->replace(b);
        EXPECT_THAT(std::exchange(story, {}), ElementsAre("a?", "a!", "~a", "b?", "b!", "~b"));
    }
}

TEST_F(DestroyedMeanwhile, BoardInsideTheDeletionOfAll)
{
    for (const bool isFailing : {false, true})
    {
        auto* const board = new BulletinBoard;
        auto* const a = new Tracked(story, "a");
        board->add(a);
        board->add(new Tracked(story, "b"));
        observe(*a);
        isDone = false;
        atFirst(
            [=]
            {
                delete board;
                if (isFailing)
                    throw std::runtime_error("too late");
            });
        if (isFailing)
        {
            EXPECT_THROW(board->deleteAll(), std::runtime_error);
        }
        else
        {
            board->deleteAll();
        }
        EXPECT_THAT(std::exchange(story, {}), ElementsAre("a?", "a!", "a?", "a!", "~a", "b?", "b!", "~b"));
    }
}

TEST_F(DestroyedMeanwhile, BoardThatIsDeletingAllInsideAnother)
{
    auto* const inner = new BulletinBoard;
    inner->add(new Tracked(story, "a"));
    BulletinBoard outer;
    outer.add(inner);
    observe(*inner);
    atFirst([&] { outer.deleteAll(); });
    outer.deleteAll();
    EXPECT_TRUE(outer.empty());
    EXPECT_THAT(story, ElementsAre("a?", "a!", "~a"));
}

TEST_F(DestroyedMeanwhile, AdoptedMemberInsideAnAdditionThatFails)
{
    BulletinBoard board;
    observe(board);
    auto adopted = std::make_unique<Tracked>(story, "a");
    Tracked* const a = adopted.get();
    atFirst(
        [&]
        {
            board.remove(*a);
            delete a;
            throw std::runtime_error("too late");
        });
    EXPECT_THROW(board.adopt(std::move(adopted)), std::runtime_error);
    EXPECT_TRUE(board.empty());
    EXPECT_THAT(story, ElementsAre("~a"));
}

TEST_F(DestroyedMeanwhile, OldMemberInsideItsReplacement)
{
    BulletinBoard board;
    const BulletinKey key;
    auto* const old = new Tracked(story, "old", key);
    board.add(old);
    observe(board);
    atFirst(
        [=]
        {
            delete old;
            throw std::runtime_error("after the removal");
        });
    auto replacement = std::make_unique<Tracked>(story, "new", key);
    EXPECT_THROW(board.addOrReplace(replacement.get()), std::runtime_error);
    EXPECT_TRUE(board.empty());
    EXPECT_THAT(story, ElementsAre("~old"));
}

TEST_F(DestroyedMeanwhile, OldMemberInsideItsReplacementThatGoesOn)
{
    BulletinBoard board;
    const BulletinKey key;
    auto* const old = new Tracked(story, "old", key);
    board.add(old);
    observe(board);
    atFirst([=] { Bulletin::destroy(old, false); });
    auto* const replacement = new Tracked(story, "new", key);
    board.addOrReplace(replacement);
    EXPECT_EQ(board.getPtr(key), replacement);
    EXPECT_THAT(std::exchange(story, {}), ElementsAre("old?", "old!", "~old"));
}

TEST_F(DestroyedMeanwhile, OldMemberWhoseRemovalFailsIsNotLost)
{
    BulletinBoard board;
    const BulletinKey key;
    board.add(new Tracked(story, "old", key));
    observe(board);
    atFirst([] { throw std::runtime_error("after the removal"); });
    auto replacement = std::make_unique<Tracked>(story, "new", key);
    EXPECT_THROW(board.addOrReplace(replacement.get()), std::runtime_error);
    EXPECT_TRUE(board.empty());
    EXPECT_THAT(story, ElementsAre("old?", "old!", "~old"));
    board.addOrReplace(replacement.release());
    EXPECT_EQ(board.size(), 1u);
}

TEST(DestroyedMeanwhileReceivers, ReceiverDestroyedByAnotherIsNotCalled)
{
    for (const std::size_t victim : {0u, 1u})
    {
        Bulletin sender;
        std::unique_ptr<Recorder> receivers[2] = {std::make_unique<Recorder>(), std::make_unique<Recorder>()};
        std::size_t heard = 0;
        for (std::unique_ptr<Recorder>& receiver : receivers)
        {
            receiver->observe(sender);
            receiver->during = [&](const Heard&)
            {
                ++heard;
                receivers[victim].reset();
            };
        }
        sender.notifyChanged();
        // The victim may have been the first; then it has destroyed itself.
        EXPECT_GE(heard, 1u);
        EXPECT_EQ(receivers[victim], nullptr);
        heard = 0;
        sender.notifyChanged();
        EXPECT_EQ(heard, 1u);
    }
}

namespace
{
/// Fails on demand.
class Fragile : public Command
{
public:
    explicit Fragile(const bool& fails) : m_fails(fails) {}
    void execute() override {}
    void undo() override
    {
        if (m_fails)
            throw std::runtime_error("undo");
    }
    void redo() override { undo(); }
    Ztring getLabel() const override { return "fragile"; }

private:
    const bool& m_fails;
};
} // namespace

TEST_F(DestroyedMeanwhile, ControllerInsideEachOfItsAnnouncements)
{
    bool fails = false;
    const std::vector<std::function<void(CommandController&)>> operations = {
        [&](CommandController& controller) { controller.execute(new Fragile(fails)); },
        [](CommandController& controller) { controller.undo(); },
        [](CommandController& controller) { controller.redo(); },
        [](CommandController& controller) { controller.clear(); },
        [](CommandController& controller) { EXPECT_FALSE(controller.pruneUndo()); },
        [&](CommandController& controller)
        {
            fails = true;
            EXPECT_THROW(controller.undo(), std::runtime_error);
        },
        [&](CommandController& controller)
        {
            fails = true;
            EXPECT_THROW(controller.redo(), std::runtime_error);
        },
    };
    for (std::size_t i = 0; i < operations.size(); ++i)
    {
        SCOPED_TRACE(i);
        fails = false;
        auto* const controller = new CommandController;
        controller->execute(new Fragile(fails));
        if (i == 2 || i == 6)
            controller->undo();
        first.heard.clear();
        second.heard.clear();
        observe(*controller);
        isDone = false;
        atFirst([=] { delete controller; });
        operations[i](*controller);
        EXPECT_EQ(countHeard(), 1u);
    }
}
