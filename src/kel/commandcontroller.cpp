// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#include <kel/commandcontroller.h>

#include <kel/changednotifier.h>
#include <kel/command.h>
#include <kel/undoredostate.h>
#include <kel/zassert.h>

namespace
{
// A command that is done but has gone back on its word is not deleted: nobody can tell what still leans on it. One that
// cannot tell stays done, on the undo stack.
bool isUndoableElseAbandon(OwnedElement<Command>& command, OwnedQueue<Command>& undoStack)
{
    try
    {
        if (command->isUndoable())
            return true;
    }
    catch (...)
    {
        command.putBack(undoStack);
        throw;
    }
    static_cast<void>(command.release());
    return false;
}

const Command* getTop(const OwnedQueue<Command>& commands)
{
    return commands.empty() ? nullptr : commands.back();
}
} // namespace

CommandController::CommandController() : Bulletin(getStaticKey()) {}

CommandController::~CommandController()
{
    clearUndo();
    clearRedo();
}

const BulletinKey& CommandController::getStaticKey()
{
    static const BulletinKey s_key("CommandController");
    return s_key;
}

void CommandController::execute(Command* command)
{
    // With its place on the stack: what was done could not be undone if memory ran out only then.
    OwnedElement<Command> owned(command);
    owned->execute();
    if (!owned->isUndoable())
        return;
    clearRedo();
    owned.putBack(m_undo);
    announceChange();
}

void CommandController::undo()
{
    KEL_ASSERT(!m_undo.empty(), "!m_undo.empty()");
    OwnedElement<Command> command = OwnedElement<Command>::takeBack(m_undo);
    const bool isUndoable = isUndoableElseAbandon(command, m_undo);
    KEL_ASSERT(isUndoable, "undoCommand->isUndoable()");
    try
    {
        command->undo();
    }
    catch (...)
    {
        command.reset();
        clearUndo();
        announceChange();
        throw;
    }
    command.putBack(m_redo);
    announceChange();
}

void CommandController::redo()
{
    KEL_ASSERT(!m_redo.empty(), "!m_redo.empty()");
    OwnedElement<Command> command = OwnedElement<Command>::takeBack(m_redo);
    try
    {
        command->redo();
    }
    catch (...)
    {
        command.reset();
        clearRedo();
        announceChange();
        throw;
    }
    // Tested only now: a command may find out by being redone whether it can be undone once more.
    const bool isUndoable = isUndoableElseAbandon(command, m_undo);
    KEL_ASSERT(isUndoable, "redoCommand->isUndoable()");
    command.putBack(m_undo);
    announceChange();
}

void CommandController::setMaximumUndo(unsigned int maximum)
{
    m_maximumUndo = maximum;
}

bool CommandController::pruneUndo()
{
    if (static_cast<unsigned int>(m_undo.size()) <= m_maximumUndo)
        return false;
    const auto left = static_cast<unsigned int>(m_undo.size()) - 1;
    const bool isStillOver = left > m_maximumUndo;
    OwnedElement<Command>::takeFront(m_undo).reset();
    // Last: an observer may destroy the controller.
    if (left == 0)
        announceChange();
    return isStillOver;
}

void CommandController::clearUndo()
{
    deleteOwned(m_undo);
}

void CommandController::clearRedo()
{
    deleteOwned(m_redo);
}

void CommandController::clear()
{
    clearUndo();
    clearRedo();
    announceChange();
}

void CommandController::clearCommands(std::deque<Command*>& commands)
{
    deleteOwned(commands);
}

void CommandController::announceChange()
{
    const UndoRedoState state = getUndoRedoState();
    ChangedNotifier notifier(*this, state);
    notifyObservers(notifier);
}

UndoRedoState CommandController::getUndoRedoState() const
{
    return UndoRedoState(getTop(m_undo), getTop(m_redo));
}
