// SPDX-License-Identifier: MIT
// Edits of the example application: commands, their undoing, and who owns what meanwhile.
#include <truss/edits/compositecommand.h>
#include <truss/edits/deletecommand.h>

#include <truss/support/trusstest.h>

#include <support/recorder.h>

#include <kel/commandcontroller.h>
#include <kel/dynamicfactory.h>
#include <kel/undoredostate.h>

namespace
{
/// A plane frame of two bars: b is in the middle, with everything fastened to it.
class Edits : public TrussTest
{
protected:
    Edits()
    {
        import("node,a,0,0,0\nnode,b,1,1,0\nnode,c,2,0,0\n"
               "bar,ab,a,b,1,10,100\nbar,bc,b,c,2,20,200\nbar,ac,a,c,3,30,300\n"
               "support,a,1,1,1\nsupport,b,0,0,1\nload,b,1,2,3\nload,b,4,5,6\n");
    }

    UndoRedoState labels()
    {
        return DynamicFactory::getSingleton().getOrCreate<CommandController>().getUndoRedoState();
    }

    template <class T>
    unsigned count()
    {
        unsigned counted = 0;
        model().forEach<T>([&](const T&) { ++counted; });
        return counted;
    }
};

TEST_F(Edits, MovingANodeIsUndoneAndRedone)
{
    edit("move b 1 5 0");
    EXPECT_EQ(node("b").getPosition(), (truss::Vector{1, 5, 0}));
    document.undo();
    EXPECT_EQ(node("b").getPosition(), (truss::Vector{1, 1, 0}));
    document.redo();
    EXPECT_EQ(node("b").getPosition(), (truss::Vector{1, 5, 0}));
}

TEST_F(Edits, MovingIsToldToTheNodesAndTheModelsObservers)
{
    Recorder recorder;
    recorder.observe(model());
    Recorder close;
    close.observe(node("b"));
    edit("move b 1 5 0");
    EXPECT_EQ(recorder.heard, (std::vector<Heard>{{"changed", &model(), &node("b")}}));
    EXPECT_EQ(close.operations(), std::vector<std::string>{"changed"});
}

TEST_F(Edits, AreaAndModulusAreUndone)
{
    edit("area ab 7");
    edit("modulus ab 9");
    EXPECT_EQ(bar("ab").getSection().area, 7);
    EXPECT_EQ(bar("ab").getSection().modulus, 9);
    EXPECT_EQ(bar("ab").getSection().density, 100);
    document.undo();
    document.undo();
    EXPECT_EQ(bar("ab").getSection().area, 1);
    EXPECT_EQ(bar("ab").getSection().modulus, 10);
}

TEST_F(Edits, AddingIsUndoneAndRedoneUnderTheSameKey)
{
    edit("add node d 3 3 3");
    const BulletinKey key = node("d").getKey();
    document.undo();
    EXPECT_EQ(model().find("d"), nullptr);
    document.redo();
    EXPECT_EQ(model().getPtr(key), &node("d"));
}

TEST_F(Edits, DeletingANodeTakesItsBarsSupportsAndLoadsWithIt)
{
    edit("delete b");
    EXPECT_EQ(model().find("b"), nullptr);
    EXPECT_EQ(model().find("ab"), nullptr);
    EXPECT_EQ(model().find("bc"), nullptr);
    EXPECT_NE(model().find("ac"), nullptr);
    EXPECT_EQ(count<truss::Support>(), 1u);
    EXPECT_EQ(count<truss::Load>(), 0u);
}

TEST_F(Edits, UndoneDeletionBringsAllBackUnderTheSameKeys)
{
    const auto before = entries();
    edit("delete b");
    document.undo();
    EXPECT_EQ(entries(), before);
    EXPECT_EQ(bar("ab").getTo(), &node("b"));
    document.redo();
    document.undo();
    EXPECT_EQ(entries(), before);
}

TEST_F(Edits, DeletingABarLeavesItsNodes)
{
    edit("delete ab");
    EXPECT_EQ(model().find("ab"), nullptr);
    EXPECT_NE(model().find("a"), nullptr);
}

TEST_F(Edits, DeletionsOfABarAndThenItsNodeAreUndoneInTurn)
{
    const auto before = entries();
    edit("delete ab");
    edit("delete b");
    document.undo();
    document.undo();
    EXPECT_EQ(entries(), before);
    EXPECT_EQ(bar("ab").getTo(), &node("b"));
}

TEST_F(Edits, AnEntityWhosePartnerIsDestroyedDoesNotDangle)
{
    truss::Bar& kept = bar("ab");
    truss::Node& destroyed = node("b");
    model().remove(destroyed);
    Bulletin::destroy(destroyed, false);
    EXPECT_EQ(kept.getTo(), nullptr);
    EXPECT_EQ(kept.getFrom(), &node("a"));
    model().forEach<truss::Load>([](const truss::Load& load) { EXPECT_EQ(load.getNode(), nullptr); });
}

TEST_F(Edits, ForgettingTheHistoryDestroysWhatItKeepsParked)
{
    Recorder recorder;
    recorder.observe(node("b"));
    edit("delete b");
    EXPECT_TRUE(recorder.heard.empty());
    DynamicFactory::getSingleton().getOrCreate<CommandController>().clear();
    EXPECT_EQ(recorder.operations(), std::vector<std::string>{"deleted"});
}

TEST_F(Edits, WhatIsOnTheBoardStaysWhenTheHistoryIsForgotten)
{
    const std::string before = toCsv();
    edit("delete b");
    document.undo();
    edit("move a -1 0 0");
    document.undo();
    DynamicFactory::getSingleton().getOrCreate<CommandController>().clear();
    EXPECT_EQ(toCsv(), before);
}

TEST_F(Edits, ReplacingTheModelForgetsTheHistory)
{
    edit("delete b");
    document.replace(truss::BulletinPtr<truss::Model>(new truss::Model));
    EXPECT_FALSE(labels().hasUndo());
    EXPECT_TRUE(model().empty());
}

TEST_F(Edits, LabelsNameTheEditAndItsObject)
{
    edit("move b 1 5 0");
    EXPECT_EQ(labels().getUndo().toUtf8(), "Move node 'b'");
    edit("area ab 2");
    EXPECT_EQ(labels().getUndo().toUtf8(), "Change area of bar 'ab'");
    edit("modulus ab 2");
    EXPECT_EQ(labels().getUndo().toUtf8(), "Change modulus of bar 'ab'");
    edit("add load a 1 0 0");
    EXPECT_EQ(labels().getUndo().toUtf8(), "Add load on node 'a'");
    edit("add support c 1 0 0");
    EXPECT_EQ(labels().getUndo().toUtf8(), "Add support of node 'c'");
    edit("delete b");
    EXPECT_EQ(labels().getUndo().toUtf8(), "Delete node 'b'");
    document.undo();
    EXPECT_EQ(labels().getRedo().toUtf8(), "Delete node 'b'");
}

TEST_F(Edits, AnEditThatMustNotBeIsRefusedAndChangesNothing)
{
    const std::string before = toCsv();
    EXPECT_PROBLEM(edit("move b 0 0 0"), "Bar 'ab' has zero length");
    EXPECT_PROBLEM(edit("move b 1.7e308 -1.7e308 1e308"), "The length of bar 'ab' is not finite");
    EXPECT_PROBLEM(edit("move ab 0 0 0"), "There is no node named 'ab'");
    EXPECT_PROBLEM(edit("area a 1"), "There is no bar named 'a'");
    EXPECT_PROBLEM(edit("area ab 0"), "The area of bar 'ab' is not positive");
    EXPECT_PROBLEM(edit("modulus ab -1"), "The modulus of bar 'ab' is not positive");
    EXPECT_PROBLEM(edit("delete z"), "There is no node or bar named 'z'");
    EXPECT_PROBLEM(edit("add node a 0 0 0"), "The name 'a' is already used");
    EXPECT_PROBLEM(edit("add support a 1 1 1"), "Node 'a' has a support already");
    EXPECT_PROBLEM(edit("stretch ab 2"), "Unknown edit 'stretch'");
    EXPECT_PROBLEM(edit("move b 1 2"), "Wrong number of words, expecting: move NODE x y z");
    EXPECT_EQ(toCsv(), before);
    EXPECT_EQ(labels().getUndo().toUtf8(), "Import 'import.csv'");
}

TEST_F(Edits, ACompositeThatFailsHalfwayTakesBackWhatItDid)
{
    const auto before = entries();
    auto composite = std::make_unique<truss::CompositeCommand>("Both");
    composite->add(parse("delete b").release());
    composite->add(parse("delete ab").release()); // gone by then
    EXPECT_THROW(document.execute(std::move(composite)), Problem);
    EXPECT_EQ(entries(), before);
    EXPECT_EQ(labels().getUndo().toUtf8(), "Import 'import.csv'");
}

TEST_F(Edits, AnInterruptedCompositeIsUndoneUpToWhereItCame)
{
    const auto before = entries();
    status.elapse();
    status.interruptAt(1); // after the first step
    EXPECT_THROW(edit("delete b"), Interrupted);
    EXPECT_EQ(model().size(), before.size() - 1);
    status.resetInterrupts();
    EXPECT_EQ(labels().getUndo().toUtf8(), "Delete node 'b'");
    document.undo();
    EXPECT_EQ(entries(), before);
    document.redo();
    EXPECT_EQ(model().size(), before.size() - 1);
}

TEST_F(Edits, TheHistoryIsBounded)
{
    for (int i = 0; i < 1002; ++i)
        edit("move b 1 " + std::to_string(i + 2) + " 0");
    for (int i = 0; i < 1000; ++i)
        document.undo();
    EXPECT_PROBLEM(document.undo(), "There is nothing to undo");
    EXPECT_EQ(node("b").getPosition()[1], 3);
}

TEST_F(Edits, NothingToRedoIsAProblem)
{
    EXPECT_PROBLEM(document.redo(), "There is nothing to redo");
}
} // namespace
