// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#pragma once

#include <kel/bulletin.h>
#include <kel/ztring.h>

class Command;

/// The labels for the Undo and Redo menu entries; the payload of the CommandController's announcements.
///
/// A value that lives as long as the notification it travels in; receivers that need it longer copy it.
class KEL_API UndoRedoState : public Bulletin
{
public:
    /// An empty label stands for nothing to undo or to redo.
    UndoRedoState(const Ztring& undoLabel, const Ztring& redoLabel);
    UndoRedoState(const UndoRedoState& other);
    UndoRedoState& operator=(const UndoRedoState& other);
    ~UndoRedoState() override;

    bool hasUndo() const;
    bool hasRedo() const;

    /// The label of what undo would undo; the assertion "hasUndo()" fails when there is nothing.
    const Ztring& getUndo() const;

    /// The label of what redo would redo; the assertion "hasRedo()" fails when there is nothing.
    const Ztring& getRedo() const;

private:
    friend class CommandController;

    /// With the labels of commands, which are made in their place: copies of texts take as long as all else in the
    /// announcement. Null stands for no command.
    UndoRedoState(const Command* undo, const Command* redo);

    Ztring m_undoLabel;
    Ztring m_redoLabel;
};
