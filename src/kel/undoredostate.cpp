// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#include <kel/undoredostate.h>

#include <kel/command.h>
#include <kel/zassert.h>

namespace
{
Ztring getLabelOf(const Command* command)
{
    return command == nullptr ? Ztring() : command->getLabel();
}
} // namespace

UndoRedoState::UndoRedoState(const Ztring& undoLabel, const Ztring& redoLabel)
    : m_undoLabel(undoLabel),
      m_redoLabel(redoLabel)
{
}

UndoRedoState::UndoRedoState(const Command* undo, const Command* redo)
    : m_undoLabel(getLabelOf(undo)),
      m_redoLabel(getLabelOf(redo))
{
}

UndoRedoState::UndoRedoState(const UndoRedoState& other) = default;

UndoRedoState& UndoRedoState::operator=(const UndoRedoState& other) = default;

UndoRedoState::~UndoRedoState() = default;

bool UndoRedoState::hasUndo() const
{
    return !m_undoLabel.empty();
}

bool UndoRedoState::hasRedo() const
{
    return !m_redoLabel.empty();
}

const Ztring& UndoRedoState::getUndo() const
{
    KEL_ASSERT(hasUndo(), "hasUndo()");
    return m_undoLabel;
}

const Ztring& UndoRedoState::getRedo() const
{
    KEL_ASSERT(hasRedo(), "hasRedo()");
    return m_redoLabel;
}
