// SPDX-License-Identifier: MIT
// Edits of the example application that fail halfway.
#include <truss/edits/compositecommand.h>
#include <truss/edits/movestep.h>

#include <truss/support/trusstest.h>

#include <kel/changedreceiver.h>
#include <kel/receiver.h>
#include <kel/removedreceiver.h>

#include <utility>

namespace
{
class FailingEdits : public TrussTest
{
protected:
    FailingEdits() { import("node,a,0,0,0\nnode,b,1,1,0\nbar,ab,a,b,1,10,100\nload,b,1,2,3\n"); }
};

/// A step that can be made to fail.
class MoodyStep : public truss::Step
{
public:
    explicit MoodyStep(const bool& fails) : m_fails(fails) {}

private:
    void apply() override
    {
        if (m_fails)
            Problem::throwProblem("Not today");
    }
    void revert() override { apply(); }

    const bool& m_fails;
};

TEST_F(FailingEdits, AnEditThatFailsHalfwayWhenRedoneLeavesTheModelAsItWas)
{
    bool fails = false;
    auto command = std::make_unique<truss::CompositeCommand>("Move and wait");
    command->add(new truss::MoveStep(model(), node("b"), {1, 5, 0}));
    command->add(new MoodyStep(fails));
    document.execute(std::move(command));
    document.undo();
    fails = true;
    EXPECT_PROBLEM(document.redo(), "Not today");
    EXPECT_EQ(node("b").getPosition(), (truss::Vector{1, 1, 0}));
}

TEST_F(FailingEdits, ACommandThatCannotBeUndoneWholeIsNotUndoneAtAll)
{
    bool fails = false;
    auto command = std::make_unique<truss::CompositeCommand>("Wait and move twice");
    command->add(new MoodyStep(fails));
    command->add(new truss::MoveStep(model(), node("b"), {1, 5, 0}));
    command->add(new truss::MoveStep(model(), node("b"), {1, 6, 0}));
    document.execute(std::move(command));
    fails = true;
    EXPECT_PROBLEM(document.undo(), "Not today");
    EXPECT_EQ(node("b").getPosition(), (truss::Vector{1, 6, 0}));
}

/// An observer that fails once when something is removed or changed.
class MoodyObserver : public Receiver, public RemovedReceiver, public ChangedReceiver
{
public:
    bool fails = true;

private:
    void removed(BulletinBoard&, Bulletin&) override { fail(); }
    void changed(Bulletin&, const Bulletin&) override { fail(); }

    void fail()
    {
        if (std::exchange(fails, false))
            Problem::throwProblem("Not today");
    }
};

TEST_F(FailingEdits, ADeletionThatAnObserverFailsLeavesTheModelAsItWas)
{
    const auto before = entries();
    MoodyObserver observer;
    observer.observe(model());
    EXPECT_PROBLEM(edit("delete a"), "Not today");
    EXPECT_EQ(entries(), before);
    EXPECT_EQ(bar("ab").getFrom(), &node("a"));
    edit("delete a");
    document.undo();
    EXPECT_EQ(entries(), before);
}

TEST_F(FailingEdits, AChangeThatAnObserverFailsLeavesTheModelAsItWas)
{
    for (const char* const line : {"move b 1 5 0", "area ab 7"})
    {
        const std::string before = toCsv();
        MoodyObserver observer;
        observer.observe(model());
        EXPECT_PROBLEM(edit(line), "Not today");
        EXPECT_EQ(toCsv(), before);
        edit(line);
        const std::string after = toCsv();
        EXPECT_NE(after, before);
        observer.fails = true;
        EXPECT_PROBLEM(document.undo(), "Not today");
        EXPECT_EQ(toCsv(), after);
    }
}
} // namespace
