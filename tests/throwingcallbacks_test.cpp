// SPDX-License-Identifier: MIT
// Callbacks of the application that throw: each of them, at each of its calls, with each kind of exception. The
// exception arrives as it is where it is laid down to, and everything goes on afterwards.
#include <kel/autodelete.h>
#include <kel/autofiledelete.h>
#include <kel/batchtask.h>
#include <kel/bulletinboard.h>
#include <kel/changedreceiver.h>
#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/filewriter.h>
#include <kel/formdataposter.h>
#include <kel/interrupted.h>
#include <kel/mementos.h>
#include <kel/othertasks.h>
#include <kel/rule.h>
#include <kel/rules.h>
#include <kel/sound.h>
#include <kel/stdouterr.h>
#include <kel/tasks.h>
#include <kel/taskslistener.h>
#include <kel/undoredostate.h>

#include "support/installed.h"
#include "support/persistable.h"
#include "support/recorder.h"
#include "support/tally.h"
#include "support/temporarydirectory.h"
#include "support/testlog.h"
#include "support/testplatform.h"
#include "support/teststatus.h"
#include "support/tracked.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
enum class Kind
{
    Problem,
    Interrupted,
    Standard,
    Integer
};

const std::string s_nothing = "nothing";

/// What is thrown, as caughtBy() names it.
std::string getName(Kind kind)
{
    const char* const names[] = {"Problem failed", "Interrupted", "runtime_error failed", "int 7"};
    return names[static_cast<std::size_t>(kind)];
}

std::string caughtBy(const std::function<void()>& action)
{
    try
    {
        action();
    }
    catch (const Interrupted&)
    {
        return "Interrupted";
    }
    catch (const Problem& problem)
    {
        return "Problem " + problem.getMessage().toUtf8();
    }
    catch (const std::runtime_error& error)
    {
        return std::string("runtime_error ") + error.what();
    }
    catch (int number)
    {
        return "int " + std::to_string(number);
    }
    return s_nothing;
}

Tally s_exceptions("exceptions");

/// Throws at its call with a given number, counted from 1; at none for 0.
class Bomb
{
public:
    void arm(std::size_t call, Kind kind)
    {
        m_left = call;
        m_kind = kind;
    }
    void disarm() { m_left = 0; }

    void call()
    {
        if (m_left == 0 || --m_left != 0)
            return;
        s_exceptions.add();
        switch (m_kind)
        {
        case Kind::Problem:
            Problem::throwProblem("failed");
        case Kind::Interrupted:
            throw Interrupted();
        case Kind::Standard:
            throw std::runtime_error("failed");
        case Kind::Integer:
            throw 7;
        }
    }

private:
    std::size_t m_left = 0;
    Kind m_kind = Kind::Integer;
};

class TestSound : public Sound
{
public:
    void play(Event, bool) override { bomb.call(); }

    Bomb bomb;
};

class ThrowingPlatform : public TestPlatform
{
public:
    void execute(const Ztring&, bool, bool) override { bomb.call(); }
    void deleteFile(const Kel::File& file, bool flag) override
    {
        bomb.call();
        TestPlatform::deleteFile(file, flag);
    }
    void moveFile(const Kel::File& from, const Kel::File& to, bool flag) override
    {
        bomb.call();
        TestPlatform::moveFile(from, to, flag);
    }
    void startTimer(Task*, unsigned int) override { bomb.call(); }
    void postForm(const Ztring&, const Ztring&, const Ztring&, const Ztring&, FormDataPoster&, Ztring&) override
    {
        bomb.call();
    }
    using Platform::startTimer;

    Bomb bomb;
};

class ThrowingCallbacks : public testing::Test
{
protected:
    ~ThrowingCallbacks() override { Persistable::deleteAll(); }

    /// Calls `attempt` with every kind for every call up to the given one.
    static void forEach(std::size_t calls, const std::function<void(std::size_t, Kind)>& attempt)
    {
        for (const Kind kind : {Kind::Problem, Kind::Interrupted, Kind::Standard, Kind::Integer})
        {
            for (std::size_t call = 1; call <= calls; ++call)
            {
                SCOPED_TRACE(testing::Message() << getName(kind) << " at call " << call);
                attempt(call, kind);
            }
        }
    }

    Bomb bomb;
    TestStatus status;
    Installed<ThrowingPlatform> platform;
    Installed<TestLog> log;
    Installed<TestSound> sound;
};

/// Five receivers of everything; the bomb is called by each.
struct Audience
{
    explicit Audience(Bomb& bomb)
    {
        for (Recorder& receiver : receivers)
        {
            receiver.during = [this, &bomb](const Heard& message)
            {
                ++heard;
                last = message.operation;
                bomb.call();
            };
        }
    }

    void observe(Bulletin& bulletin)
    {
        for (Recorder& receiver : receivers)
            receiver.observe(bulletin);
    }

    std::size_t takeHeard() { return std::exchange(heard, 0); }

    std::size_t heard = 0;
    std::string last;
    std::array<Recorder, 5> receivers;
};
} // namespace

// --- Observers

TEST_F(ThrowingCallbacks, ObserverEndsThePassAndTheNextReachesAll)
{
    forEach(5,
            [this](std::size_t call, Kind kind)
            {
                Bulletin sender;
                Audience audience(bomb);
                audience.observe(sender);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { sender.notifyChanged(); }), getName(kind));
                EXPECT_EQ(audience.takeHeard(), call);
                sender.notifyChanged();
                EXPECT_EQ(audience.takeHeard(), 5u);
            });
}

TEST_F(ThrowingCallbacks, ObserverOfABoardLeavesItAsItIsAtThatMoment)
{
    forEach(5,
            [this](std::size_t call, Kind kind)
            {
                BulletinBoard board;
                Audience audience(bomb);
                audience.observe(board);
                auto* const added = new Bulletin;

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.add(added); }), getName(kind));
                EXPECT_EQ(board.getPtr(added->getKey()), added);
                EXPECT_EQ(audience.takeHeard(), call);

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.remove(*added); }), getName(kind));
                EXPECT_TRUE(board.empty());
                EXPECT_EQ(audience.takeHeard(), call);

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.incrementUse(); }), getName(kind));
                EXPECT_EQ(board.size(), 1u);
                EXPECT_FALSE(board.isInUse());
                EXPECT_TRUE(board.incrementUse());
                EXPECT_TRUE(board.decrementUse());

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.addOrReplace(added); }), getName(kind));
                EXPECT_EQ(board.getPtr(added->getKey()), added);
                audience.takeHeard();
            });
}

TEST_F(ThrowingCallbacks, ObserverOfAReplacementLosesNeitherOfTheTwo)
{
    Story story;
    const BulletinKey key;
    forEach(10,
            [&](std::size_t call, Kind kind)
            {
                BulletinBoard board;
                Audience audience(bomb);
                board.add(new Tracked(story, "old", key));
                audience.observe(board);
                auto replacement = std::make_unique<Tracked>(story, "new", key);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.replace(replacement.get()); }), getName(kind));
                EXPECT_EQ(audience.last, call <= 5 ? "removed" : "added");
                EXPECT_THAT(std::exchange(story, {}), ElementsAre("old?", "old!", "~old"));
                EXPECT_EQ(board.empty(), call <= 5);
                if (!board.empty())
                    static_cast<void>(replacement.release());
                board.deleteAll();
                replacement.reset();
                story.clear();
            });
}

TEST_F(ThrowingCallbacks, ObserverOfAReplacedMemberLosesNeitherOfTheTwo)
{
    Story story;
    const BulletinKey key;
    forEach(5,
            [&](std::size_t call, Kind kind)
            {
                BulletinBoard board;
                Audience audience(bomb);
                auto* const old = new Tracked(story, "old", key);
                board.add(old);
                audience.observe(*old);
                auto replacement = std::make_unique<Tracked>(story, "new", key);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.addOrReplace(replacement.get()); }), getName(kind));
                EXPECT_THAT(std::exchange(story, {}), ElementsAre("old?", "old!", "old?", "old!", "~old"));
                EXPECT_TRUE(board.empty());
                replacement.reset();
                story.clear();
            });
}

TEST_F(ThrowingCallbacks, ObserverOfAMemberEndsTheDeletionOfAllButLeavesNoDeadEntry)
{
    Story story;
    forEach(15,
            [&](std::size_t call, Kind kind)
            {
                BulletinBoard board;
                Audience audience(bomb);
                for (const char* const name : {"a", "b", "c"})
                {
                    auto* const member = new Tracked(story, name);
                    board.add(member);
                    audience.observe(*member);
                }
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.deleteAll(); }), getName(kind));
                EXPECT_EQ(board.size(), 3 - (call - 1) / 5);
                for (const auto& [number, member] : board)
                    EXPECT_EQ(member->getKey().getNumber(), number);
                board.deleteAll();
                EXPECT_TRUE(board.empty());
                EXPECT_EQ(std::count_if(story.begin(), story.end(), [](auto& entry) { return entry[0] == '~'; }), 3);
                story.clear();
            });
}

TEST_F(ThrowingCallbacks, ObserverOfADyingBoardOrGuardIsNotHeard)
{
    Story story;
    forEach(15,
            [&](std::size_t call, Kind kind)
            {
                Audience audience(bomb);
                {
                    BulletinBoard board;
                    for (const char* const name : {"a", "b", "c"})
                    {
                        auto* const member = new Tracked(story, name);
                        board.add(member);
                        audience.observe(*member);
                    }
                    bomb.arm(call, kind);
                }
                EXPECT_EQ(std::count_if(story.begin(), story.end(), [](auto& entry) { return entry[0] == '~'; }), 3);
                story.clear();
                {
                    auto* const guarded = new Tracked(story, "guarded");
                    audience.observe(*guarded);
                    const AutoDelete guard(guarded);
                    bomb.arm((call - 1) % 5 + 1, kind);
                }
                EXPECT_THAT(std::exchange(story, {}), ElementsAre("guarded?", "guarded!", "~guarded"));
            });
}

// --- Hooks of bulletins

namespace
{
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

    static inline std::size_t s_count = 0;

private:
    Bomb& m_bomb;
};
} // namespace

TEST_F(ThrowingCallbacks, BulletinThatThrowsWhenItIsToBeDestroyedLivesOn)
{
    forEach(2,
            [this](std::size_t call, Kind kind)
            {
                auto* const bulletin = new Hooked(bomb);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { Bulletin::destroy(bulletin, true); }), getName(kind));
                EXPECT_EQ(Hooked::s_count, 1u);
                Bulletin::destroy(bulletin, false);
                EXPECT_EQ(Hooked::s_count, 0u);
            });
}

TEST_F(ThrowingCallbacks, BoardOfBulletinsThatThrowStaysWhole)
{
    forEach(6,
            [this](std::size_t call, Kind kind)
            {
                BulletinBoard board;
                for (int i = 0; i < 3; ++i)
                    board.add(new Hooked(bomb));

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { BulletinBoard copy(board); }), getName(kind));
                EXPECT_EQ(Hooked::s_count, 3u);
                const BulletinBoard copy(board);
                EXPECT_EQ(copy.size(), 3u);

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.deleteAll(); }), getName(kind));
                EXPECT_EQ(board.size(), Hooked::s_count - 3);
                EXPECT_EQ(board.size(), 3 - (call - 1) / 2);
                bomb.arm(1, kind);
            });
    EXPECT_EQ(Hooked::s_count, 0u);
}

TEST_F(ThrowingCallbacks, RuleEndsTheRunAndTheNextRunsAll)
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

// --- Commands and mementos

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

std::string describe(const CommandController& controller)
{
    const UndoRedoState state = controller.getUndoRedoState();
    return std::string(state.hasUndo() ? "undo" : "-") + " " + (state.hasRedo() ? "redo" : "-");
}
} // namespace

TEST_F(ThrowingCallbacks, CommandThatFailsCostsWhatIsLaidDown)
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

TEST_F(ThrowingCallbacks, QuestionToACommandThatFailsLeavesNothingDangling)
{
    // Calls: execute, isUndoable, getLabel; isUndoable, undo, getLabel twice; redo, isUndoable, getLabel.
    for (const Kind kind : {Kind::Problem, Kind::Interrupted, Kind::Standard, Kind::Integer})
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

TEST_F(ThrowingCallbacks, ObserverOfTheStacksFindsThemChangedAlready)
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

TEST_F(ThrowingCallbacks, MementoThatFailsLeavesTheCompositeAsIsLaidDown)
{
    static constexpr std::size_t count = 4;
    forEach(count,
            [this](std::size_t call, Kind kind)
            {
                int document = 0;
                Mementos mementos;
                for (std::size_t i = 0; i < count; ++i)
                    mementos.add(new Step(bomb, document));
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
                for (std::size_t i = 0; i < count; ++i)
                    mementos.add(new Step(bomb, document));
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

TEST_F(ThrowingCallbacks, ProgressOfACompositeThatFailsIsAFailureOfItsStep)
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

// --- Tasks

namespace
{
class CallingTask : public Task
{
public:
    CallingTask(Bomb& action, Bomb& question, int steps) : m_action(action), m_question(question), m_left(steps)
    {
        ++s_count;
    }
    ~CallingTask() override { --s_count; }

    void performAction() override
    {
        --m_left;
        ++s_steps;
        m_action.call();
    }
    bool repeat() override
    {
        m_question.call();
        return m_left > 0;
    }

    static inline int s_count = 0;
    static inline int s_steps = 0;

private:
    Bomb& m_action;
    Bomb& m_question;
    int m_left;
};

class Ear : public Task::ErrorInterruptListener
{
public:
    explicit Ear(Bomb& bomb) : m_bomb(bomb) {}

    void onError(Problem& problem) override { hear("error " + problem.getMessage().toUtf8()); }
    void onInterrupted(Problem& problem) override { hear("interrupted " + problem.getMessage().toUtf8()); }

    std::vector<std::string> heard;

private:
    void hear(const std::string& message)
    {
        heard.push_back(message);
        m_bomb.call();
    }

    Bomb& m_bomb;
};

class Light : public TasksListener
{
public:
    explicit Light(Bomb& bomb) : m_bomb(bomb) { Tasks::getSingleton()->attach(this); }
    ~Light() override { Tasks::getSingleton()->detach(this); }
    Light(const Light&) = delete;
    Light& operator=(const Light&) = delete;

    void tasksChanged(bool busy) override
    {
        isOn = busy;
        m_bomb.call();
    }
    void enableMenu(bool) override { m_bomb.call(); }

    bool isOn = false;

private:
    Bomb& m_bomb;
};

/// Runs both queues until they are empty, through all failures, which it counts.
std::size_t runAll()
{
    std::size_t failures = 0;
    for (bool more = true; more;)
    {
        const std::string caught =
            caughtBy([&] { more = Tasks::getSingleton()->onIdle() || OtherTasks::getSingleton()->onIdle(); });
        failures += caught != s_nothing;
    }
    return failures;
}
} // namespace

TEST_F(ThrowingCallbacks, TaskIsReportedAndTheOthersRun)
{
    Bomb calm;
    const auto getReport = [](Kind kind)
    {
        const char* const reports[] = {"error failed", "interrupted ", "error failed", "error Unknown Problem"};
        return std::string(reports[static_cast<std::size_t>(kind)]);
    };
    forEach(6,
            [&](std::size_t call, Kind kind)
            {
                Ear ear(calm);
                for (int i = 0; i < 3; ++i)
                    Tasks::getSingleton()->add(new CallingTask(bomb, calm, 2));
                bomb.arm(call, kind);
                EXPECT_EQ(runAll(), 0u);
                EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), 6);
                EXPECT_EQ(CallingTask::s_count, 0);
                EXPECT_THAT(ear.heard, ElementsAre(getReport(kind)));
                EXPECT_EQ(log->messages.size(), 1u);
                log->messages.clear();
            });
}

TEST_F(ThrowingCallbacks, ListenerOrLogThatFailsKeepsNoReportFromTheOthers)
{
    Bomb calm;
    forEach(4,
            [&](std::size_t call, Kind kind)
            {
                Ear ears[] = {Ear(bomb), Ear(bomb), Ear(bomb)};
                log->onAppend = [this] { bomb.call(); };
                for (const Kind reported : {Kind::Problem, Kind::Interrupted})
                {
                    Bomb inside;
                    inside.arm(1, reported);
                    CallingTask task(inside, calm, 1);
                    bomb.arm(call, kind);
                    task.execute();
                    for (Ear& ear : ears)
                        EXPECT_EQ(std::exchange(ear.heard, {}).size(), 1u);
                    EXPECT_EQ(log->messages.size(), 1u);
                    log->messages.clear();
                }
                log->onAppend = nullptr;
            });
    CallingTask::s_steps = 0;
}

TEST_F(ThrowingCallbacks, QuestionToATaskThatFailsCostsThatTask)
{
    Bomb calm;
    forEach(6,
            [&](std::size_t call, Kind kind)
            {
                Light light(calm);
                for (int i = 0; i < 3; ++i)
                    Tasks::getSingleton()->add(new CallingTask(calm, bomb, 2));
                bomb.arm(call, kind);
                EXPECT_EQ(runAll(), 1u);
                // Cut short in its first step or after its last.
                EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), call <= 3 ? 5 : 6);
                EXPECT_EQ(CallingTask::s_count, 0);
                EXPECT_FALSE(light.isOn);

                for (int i = 0; i < 3; ++i)
                    OtherTasks::getSingleton()->add(new CallingTask(calm, bomb, 2));
                bomb.arm(call, kind);
                EXPECT_EQ(runAll(), 1u);
                EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), call <= 3 ? 5 : 6);
                EXPECT_EQ(CallingTask::s_count, 0);
            });
}

TEST_F(ThrowingCallbacks, SoundOrListenerThatFailsAtAStartOrAnEndLosesNoTask)
{
    Bomb calm;
    forEach(2,
            [&](std::size_t call, Kind kind)
            {
                for (Bomb* const failing : {&bomb, &sound->bomb})
                {
                    Light first(calm);
                    Light second(bomb);
                    for (int i = 0; i < 3; ++i)
                        Tasks::getSingleton()->add(new CallingTask(calm, calm, 2));
                    status.setInterrupted();
                    failing->arm(call, kind);
                    runAll();
                    failing->disarm();
                    EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), 6);
                    EXPECT_EQ(CallingTask::s_count, 0);
                    EXPECT_FALSE(first.isOn);
                    EXPECT_FALSE(second.isOn);
                    EXPECT_FALSE(status.isInterrupted());
                    log->messages.clear();
                }
            });
}

TEST_F(ThrowingCallbacks, ListenerThatFailsWhenMenusAreEnabledEndsThatOnly)
{
    forEach(2,
            [&](std::size_t call, Kind kind)
            {
                Light first(bomb);
                Light second(bomb);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([] { Tasks::getSingleton()->enableMenu(true); }), getName(kind));
                Tasks::getSingleton()->enableMenu(true);
            });
}

TEST_F(ThrowingCallbacks, SubTaskIsReportedAndTheBatchGoesOn)
{
    Bomb calm;
    for (const bool interleave : {false, true})
    {
        forEach(6,
                [&](std::size_t call, Kind kind)
                {
                    BatchTask batch(interleave);
                    for (int i = 0; i < 3; ++i)
                        batch.add(new CallingTask(bomb, calm, 2));
                    bomb.arm(call, kind);
                    while (batch.repeat())
                        batch.execute();
                    EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), 6);
                    EXPECT_EQ(CallingTask::s_count, 0);
                });
    }
}

// --- Status and platform while saving and opening

TEST_F(ThrowingCallbacks, StatusOrPlatformThatFailsLeavesTheOldFileOrTheWholeNewOne)
{
    const TemporaryDirectory directory;
    const Kel::File file(Ztring(directory / "model"));
    const auto save = [&](const std::string& name)
    {
        Document document;
        for (int i = 0; i < 3; ++i)
            document.add(new Node(name));
        FileWriter writer;
        writer.open(file, true)->writeObj(&document);
        writer.close();
    };
    const auto open = [&](const char* name)
    {
        FileReader reader;
        const Kel::File opened(Ztring(directory / name));
        const std::unique_ptr<Serializable> root(reader.open(opened, true)->perform());
        const auto& document = dynamic_cast<const Document&>(*root);
        EXPECT_EQ(document.size(), 3u);
        return dynamic_cast<const Node&>(*(*document.begin()).second).name.toUtf8();
    };
    forEach(4,
            [&](std::size_t call, Kind kind)
            {
                save("old");
                status.setUpdateInterval(0);
                status.onUpdate = [this](int) { bomb.call(); };
                bomb.arm(call, kind);
                // The clock may stand still from one check to the next.
                const std::string caught = caughtBy([&] { save("new"); });
                status.onUpdate = nullptr;
                EXPECT_EQ(open("model"), caught == s_nothing ? "new" : "old");
                EXPECT_FALSE(directory.has("model.tmp"));
                status.onUpdate = [this](int) { bomb.call(); };
                bomb.arm(call, kind);
                caughtBy([&] { open("model"); });
                status.onUpdate = nullptr;
                Persistable::deleteAll();
            });
    forEach(2,
            [&](std::size_t call, Kind kind)
            {
                save("old");
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { save("new"); }), getName(kind));
                EXPECT_EQ(open("model.tmp"), "new");
                EXPECT_EQ(directory.has("model") ? open("model") : "gone", call == 1 ? "old" : "gone");
                save("newest");
                EXPECT_EQ(open("model"), "newest");
                EXPECT_FALSE(directory.has("model.tmp"));
            });
}

TEST_F(ThrowingCallbacks, PlatformThatFailsIsNotHeardByDestructors)
{
    const TemporaryDirectory directory;
    const Ztring path(directory.write("file", "text"));
    forEach(2,
            [&](std::size_t call, Kind kind)
            {
                platform->bomb.arm(1, kind);
                {
                    const AutoFileDelete guard{Kel::File(path)};
                }
                platform->bomb.arm(call, kind);
                {
                    const StdOutErr output(path, path);
                }
                platform->bomb.arm(1, kind);
                {
                    FileWriter writer;
                    writer.open(path, false);
                }
                platform->bomb.disarm();
            });
}

TEST_F(ThrowingCallbacks, PlatformThatFailsIsHeardByItsCallers)
{
    forEach(1,
            [&](std::size_t call, Kind kind)
            {
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { platform->run("command", "", Kel::File(""), false, false); }), getName(kind));
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { platform->startTimer(nullptr); }), getName(kind));
                FormDataPoster form;
                Ztring response;
                platform->bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { form.postTo("where", "path", response); }), getName(kind));
            });
}
