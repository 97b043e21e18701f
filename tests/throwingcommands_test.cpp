// SPDX-License-Identifier: MIT
// Commands and mementos that throw, and what they call: the exception arrives as it is where it is laid down to, and
// the history goes on afterwards.
#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/mementos.h>
#include <kel/undoredostate.h>

#include "support/audience.h"
#include "support/bomb.h"
#include "support/recorder.h"
#include "support/teststatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

using testing::IsEmpty;

namespace
{
class Step : public Command
{
public:
    Step(Bomb& bomb, int& document) : m_bomb(bomb), m_document(document) { ++s_count; }
    ~Step() override { --s_count; }

    void execute() override
    {
        m_bomb.call();
        ++m_document;
    }
    void undo() override
    {
        m_bomb.call();
        --m_document;
    }
    bool isUndoable() const override
    {
        m_bomb.call();
        return true;
    }
    Ztring getLabel() const override
    {
        m_bomb.call();
        return "step";
    }

    static inline int s_count = 0;

private:
    Bomb& m_bomb;
    int& m_document;
};

/// The bomb is called for the percentage that nested work asks for.
class AskedStatus : public TestStatus
{
public:
    unsigned int getPercentComplete() override
    {
        bomb.call();
        return TestStatus::getPercentComplete();
    }

    Bomb bomb;
};

class ThrowingCommands : public testing::Test
{
protected:
    static constexpr std::size_t count = 4;

    void addSteps(Mementos& mementos, int& document)
    {
        for (std::size_t i = 0; i < count; ++i)
            mementos.add(new Step(bomb, document));
    }

    Bomb bomb;
    AskedStatus status;
};

std::string describe(const CommandController& controller)
{
    const UndoRedoState state = controller.getUndoRedoState();
    return std::string(state.hasUndo() ? "undo" : "-") + " " + (state.hasRedo() ? "redo" : "-");
}
} // namespace

TEST_F(ThrowingCommands, CommandThatFailsCostsWhatIsLaidDown)
{
    forEach(1,
            [this](std::size_t call, Kind kind)
            {
                int document = 0;
                CommandController controller;
                Recorder menu;
                for (int i = 0; i < 4; ++i)
                    controller.execute(new Step(bomb, document));
                controller.undo();
                menu.observe(controller);

                // Only itself, in its execution.
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { controller.execute(new Step(bomb, document)); }), getName(kind));
                EXPECT_EQ(Step::s_count, 4);
                EXPECT_EQ(describe(controller), "undo redo");
                EXPECT_THAT(menu.heard, IsEmpty());

                // All that could be redone, in its redoing.
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { controller.redo(); }), getName(kind));
                EXPECT_EQ(Step::s_count, 3);
                EXPECT_EQ(describe(controller), "undo -");
                EXPECT_EQ(menu.heard.size(), 1u);

                // All that could be undone, in its undoing; it is asked before whether it can be.
                controller.undo();
                bomb.arm(call + 1, kind);
                EXPECT_EQ(caughtBy([&] { controller.undo(); }), getName(kind));
                EXPECT_EQ(Step::s_count, 1);
                EXPECT_EQ(describe(controller), "- redo");
                EXPECT_EQ(menu.heard.size(), 3u);

                controller.redo();
                EXPECT_EQ(describe(controller), "undo -");
            });
    EXPECT_EQ(Step::s_count, 0);
}

TEST_F(ThrowingCommands, QuestionToACommandThatFailsLeavesNothingDangling)
{
    // Calls: execute, isUndoable, getLabel; isUndoable, undo, getLabel twice; redo, isUndoable, getLabel.
    for (const Kind kind : s_kinds)
    {
        for (std::size_t call = 1;; ++call)
        {
            SCOPED_TRACE(testing::Message() << getName(kind) << " at call " << call);
            int document = 0;
            CommandController controller;
            controller.execute(new Step(bomb, document));
            bomb.arm(call, kind);
            const std::string caught = caughtBy(
                [&]
                {
                    controller.execute(new Step(bomb, document));
                    controller.undo();
                    controller.redo();
                });
            bomb.disarm();
            controller.getUndoRedoState();
            controller.execute(new Step(bomb, document));
            EXPECT_EQ(describe(controller), "undo -");
            controller.clear();
            EXPECT_EQ(Step::s_count, 0);
            if (caught == s_nothing)
                break;
            EXPECT_EQ(caught, getName(kind));
        }
    }
}

TEST_F(ThrowingCommands, ObserverOfTheStacksFindsThemChangedAlready)
{
    forEach(5,
            [this](std::size_t call, Kind kind)
            {
                Bomb calm;
                int document = 0;
                CommandController controller;
                Audience audience(bomb);
                audience.observe(controller);

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { controller.execute(new Step(calm, document)); }), getName(kind));
                EXPECT_EQ(describe(controller), "undo -");
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { controller.undo(); }), getName(kind));
                EXPECT_EQ(describe(controller), "- redo");
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { controller.redo(); }), getName(kind));
                EXPECT_EQ(describe(controller), "undo -");
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { controller.pruneUndo(); }), getName(kind));
                EXPECT_EQ(describe(controller), "- -");
                EXPECT_EQ(Step::s_count, 0);
                EXPECT_EQ(document, 1);
            });
}

TEST_F(ThrowingCommands, MementoThatFailsLeavesTheCompositeAsIsLaidDown)
{
    forEach(count,
            [this](std::size_t call, Kind kind)
            {
                int document = 0;
                Mementos mementos;
                addSteps(mementos, document);
                bomb.arm(call, kind);
                // An interrupt is dealt with: what did not run goes.
                const bool isInterrupt = kind == Kind::Interrupted;
                EXPECT_EQ(caughtBy([&] { mementos.execute(); }), isInterrupt ? s_nothing : getName(kind));
                EXPECT_EQ(document, static_cast<int>(call) - 1);
                EXPECT_EQ(mementos.size(), isInterrupt ? call : count);
                EXPECT_EQ(Step::s_count, static_cast<int>(mementos.size()));
            });
    forEach(count,
            [this](std::size_t call, Kind kind)
            {
                int document = 0;
                Mementos mementos;
                addSteps(mementos, document);
                mementos.execute();
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { mementos.undo(); }), getName(kind));
                EXPECT_EQ(mementos.size(), count);
                document = 0;
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { mementos.redo(); }), getName(kind));
                EXPECT_EQ(document, static_cast<int>(call) - 1);
                EXPECT_EQ(Step::s_count, static_cast<int>(count));
            });
    EXPECT_EQ(Step::s_count, 0);
}

TEST_F(ThrowingCommands, ProgressOfACompositeThatFailsIsAFailureOfItsStep)
{
    forEach(4,
            [this](std::size_t call, Kind kind)
            {
                Bomb calm;
                int document = 0;
                Mementos mementos;
                class Elapsing : public Step
                {
                public:
                    Elapsing(Bomb& bomb, int& document, TestStatus& status) : Step(bomb, document), m_status(status) {}
                    void execute() override
                    {
                        m_status.elapse();
                        Step::execute();
                    }
                    void undo() override
                    {
                        m_status.elapse();
                        Step::undo();
                    }

                private:
                    TestStatus& m_status;
                };
                for (int i = 0; i < 4; ++i)
                    mementos.add(new Elapsing(calm, document, status));
                status.onUpdate = [this](int) { bomb.call(); };
                mementos.execute();
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { mementos.undo(); }), getName(kind));
                EXPECT_EQ(document, 4 - static_cast<int>(call));
                document = 0;
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { mementos.redo(); }), getName(kind));
                EXPECT_EQ(document, static_cast<int>(call));
                document = 0;
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { mementos.execute(); }), kind == Kind::Interrupted ? s_nothing : getName(kind));
                EXPECT_EQ(document, static_cast<int>(call));
                // The next check is due again, as no update is running any more.
                const std::size_t updates = status.updates.size();
                status.elapse();
                status.checkInterrupt(0);
                EXPECT_EQ(status.updates.size(), updates + 1);
                status.onUpdate = nullptr;
            });
}

TEST_F(ThrowingCommands, PercentageThatFailsIsAFailureOfTheStepBefore)
{
    forEach(count,
            [this](std::size_t call, Kind kind)
            {
                int document = 0;
                Mementos mementos;
                addSteps(mementos, document);
                status.bomb.arm(call, kind);
                const bool isInterrupt = kind == Kind::Interrupted;
                EXPECT_EQ(caughtBy([&] { mementos.execute(); }), isInterrupt ? s_nothing : getName(kind));
                EXPECT_EQ(document, static_cast<int>(call));
                EXPECT_EQ(mementos.size(), isInterrupt ? call : count);
                EXPECT_EQ(Step::s_count, static_cast<int>(mementos.size()));
                document = 0;
                mementos.execute();
                EXPECT_EQ(document, static_cast<int>(mementos.size()));
                mementos.undo();
                EXPECT_EQ(document, 0);
            });
    EXPECT_EQ(Step::s_count, 0);
}
