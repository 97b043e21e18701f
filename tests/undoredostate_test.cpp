// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#include <kel/undoredostate.h>

#include "support/problem.h"

#include <gtest/gtest.h>

TEST(UndoRedoState, GivesTheLabelsThatItHas)
{
    const UndoRedoState state("Move", "Rename");
    EXPECT_TRUE(state.hasUndo());
    EXPECT_TRUE(state.hasRedo());
    EXPECT_EQ(state.getUndo(), "Move");
    EXPECT_EQ(state.getRedo(), "Rename");
}

TEST(UndoRedoState, EmptyLabelsStandForNothing)
{
    const UndoRedoState state("", "");
    EXPECT_FALSE(state.hasUndo());
    EXPECT_FALSE(state.hasRedo());
    EXPECT_ASSERTION(state.getUndo(), "hasUndo()");
    EXPECT_ASSERTION(state.getRedo(), "hasRedo()");
}

TEST(UndoRedoState, LabelsAreIndependent)
{
    const UndoRedoState state("", "Rename");
    EXPECT_FALSE(state.hasUndo());
    EXPECT_EQ(state.getRedo(), "Rename");
}

TEST(UndoRedoState, CopyHasTheLabelsAndTheIdentity)
{
    const UndoRedoState state("Move", "Rename");
    const UndoRedoState copy(state);
    EXPECT_EQ(copy.getUndo(), "Move");
    EXPECT_EQ(copy.getRedo(), "Rename");
    EXPECT_EQ(copy.getKey(), state.getKey());
}

TEST(UndoRedoState, AssignmentReplacesTheLabels)
{
    UndoRedoState state("Move", "Rename");
    state = UndoRedoState("", "Delete");
    EXPECT_FALSE(state.hasUndo());
    EXPECT_EQ(state.getRedo(), "Delete");
}
