// SPDX-License-Identifier: MIT
// Bulletins, boards and rules that throw: the exception arrives as it is where it is laid down to, and what they belong
// to goes on afterwards.
#include <kel/autodelete.h>
#include <kel/bulletinboard.h>
#include <kel/rule.h>
#include <kel/rules.h>

#include "support/bomb.h"
#include "support/tracked.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

using testing::ElementsAre;

namespace
{
class ThrowingBulletins : public testing::Test
{
protected:
    Bomb bomb;
};

class Hooked : public Bulletin
{
public:
    explicit Hooked(Bomb& bomb) : m_bomb(bomb) { ++s_count; }
    Hooked(const Hooked& other) : Bulletin(other), m_bomb(other.m_bomb) { ++s_count; }
    ~Hooked() override { --s_count; }

    bool canDelete() override
    {
        m_bomb.call();
        return true;
    }
    void preDelete() override
    {
        m_bomb.call();
        Bulletin::preDelete();
    }
    Hooked* clone() const override
    {
        m_bomb.call();
        return new Hooked(*this);
    }
    bool canClone() const override
    {
        m_bomb.call();
        return true;
    }
    Ztring getToolTip() override
    {
        m_bomb.call();
        return "tip";
    }

    static inline std::size_t s_count = 0;

private:
    Bomb& m_bomb;
};

/// Throws before and after what it does.
class HookedBoard : public BulletinBoard
{
public:
    explicit HookedBoard(Bomb& bomb) : m_bomb(bomb) {}

    using BulletinBoard::add;
    void add(Bulletin* obj) override
    {
        m_bomb.call();
        BulletinBoard::add(obj);
        m_bomb.call();
    }
    void remove(Bulletin& obj) override
    {
        m_bomb.call();
        BulletinBoard::remove(obj);
        m_bomb.call();
    }
    void clear() override
    {
        m_bomb.call();
        BulletinBoard::clear();
        m_bomb.call();
    }

private:
    Bomb& m_bomb;
};
} // namespace

TEST_F(ThrowingBulletins, BulletinThatThrowsWhenItIsToBeDestroyedLivesOn)
{
    forEach(2,
            [this](std::size_t call, Kind kind)
            {
                auto* const bulletin = new Hooked(bomb);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { Bulletin::destroy(bulletin, true); }), getName(kind));
                EXPECT_EQ(Hooked::s_count, 1u);
                {
                    const AutoDelete guard(bulletin);
                    bomb.arm(call, kind);
                }
                EXPECT_EQ(Hooked::s_count, 0u);
            });
}

TEST_F(ThrowingBulletins, BoardOfBulletinsThatThrowStaysWhole)
{
    forEach(6,
            [this](std::size_t call, Kind kind)
            {
                BulletinBoard board;
                for (int i = 0; i < 3; ++i)
                    board.add(new Hooked(bomb));

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { static_cast<void>(std::make_unique<BulletinBoard>(board)); }), getName(kind));
                EXPECT_EQ(Hooked::s_count, 3u);
                const BulletinBoard copy(board);
                EXPECT_EQ(copy.size(), 3u);

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.deleteAll(); }), getName(kind));
                EXPECT_EQ(board.size(), Hooked::s_count - 3);
                EXPECT_EQ(board.size(), 3 - (call - 1) / 2);
                // Not heard when the boards die.
                bomb.arm(call, kind);
            });
    EXPECT_EQ(Hooked::s_count, 0u);
}

TEST_F(ThrowingBulletins, OperationOfABoardThatThrowsLosesNothing)
{
    Story story;
    const BulletinKey key;
    const auto makeTracked = [&](const char* name) { return std::make_unique<Tracked>(story, name, key); };
    forEach(2,
            [&](std::size_t call, Kind kind)
            {
                story.clear();
                const bool isDone = call == 2;
                HookedBoard board(bomb);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.adopt(makeTracked("a")); }), getName(kind));
                EXPECT_EQ(board.size(), isDone ? 1u : 0u);
                EXPECT_EQ(story.empty(), isDone);
                if (!isDone)
                    board.adopt(makeTracked("a"));
                story.clear();

                Bulletin* const member = board.getPtr(key);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.removeByKey(key); }), getName(kind));
                EXPECT_EQ(board.getPtr(key), isDone ? nullptr : member);
                if (isDone)
                    board.add(member);

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.deleteAll(); }), getName(kind));
                EXPECT_TRUE(board.empty());
                EXPECT_THAT(std::exchange(story, {}), ElementsAre("a?", "a!", "~a"));
                board.adopt(makeTracked("b"));
                EXPECT_EQ(board.size(), 1u);
            });
    story.clear();
    // Before and after the removal of the old one, then before and after the addition of the new one.
    forEach(4,
            [&](std::size_t call, Kind kind)
            {
                for (const bool isReplace : {false, true})
                {
                    HookedBoard board(bomb);
                    board.adopt(makeTracked("old"));
                    std::unique_ptr<Tracked> replacement = makeTracked("new");
                    bomb.arm(call, kind);
                    EXPECT_EQ(caughtBy(
                                  [&]
                                  {
                                      if (isReplace)
                                          board.replace(replacement.get());
                                      else
                                          board.addOrReplace(replacement.get());
                                  }),
                              getName(kind));
                    EXPECT_EQ(story.empty(), call == 1);
                    EXPECT_EQ(board.size(), call == 1 || call == 4 ? 1u : 0u);
                    if (board.getPtr(key) == replacement.get())
                        static_cast<void>(replacement.release());
                    EXPECT_EQ(replacement == nullptr, call == 4);
                    board.deleteAll();
                    replacement.reset();
                    EXPECT_EQ(std::count(story.begin(), story.end(), "~old"), 1);
                    EXPECT_EQ(std::count(story.begin(), story.end(), "~new"), 1);
                    story.clear();
                }
            });
}

TEST_F(ThrowingBulletins, ToolTipThatFailsIsHeard)
{
    forEach(1,
            [this](std::size_t call, Kind kind)
            {
                const Hooked bulletin(bomb);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { static_cast<const Bulletin&>(bulletin).getToolTip(); }), getName(kind));
                EXPECT_EQ(static_cast<const Bulletin&>(bulletin).getToolTip().toUtf8(), "tip");
            });
}

TEST_F(ThrowingBulletins, RuleEndsTheRunAndTheNextRunsAll)
{
    class CallingRule : public Rule
    {
    public:
        CallingRule(Bomb& bomb, std::size_t& applied) : m_bomb(bomb), m_applied(applied) {}
        void apply(Bulletin&, Bulletin*) override
        {
            ++m_applied;
            m_bomb.call();
        }

    private:
        Bomb& m_bomb;
        std::size_t& m_applied;
    };
    forEach(3,
            [this](std::size_t call, Kind kind)
            {
                Rules rules;
                Bulletin target;
                std::size_t applied = 0;
                for (int i = 0; i < 3; ++i)
                    rules.add(target.getKey(), new CallingRule(bomb, applied));
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { rules.execute(target.getKey(), target, nullptr); }), getName(kind));
                EXPECT_EQ(applied, call);
                applied = 0;
                rules.execute(target.getKey(), target, nullptr);
                EXPECT_EQ(applied, 3u);
            });
}
