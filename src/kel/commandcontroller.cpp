// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#include <kel/commandcontroller.h>

#include <kel/changednotifier.h>
#include <kel/command.h>
#include <kel/ownedqueue.h>
#include <kel/undoredostate.h>
#include <kel/zassert.h>

namespace
{
// A command that has gone back on its word is not deleted: nobody can tell what still leans on it.
bool isUndoableElseAbandon(OwnedElement<Command>& command)
{
    if (command->isUndoable())
        return true;
    static_cast<void>(command.release());
    return false;
}

Ztring getLabelOfTop(const std::list<Command*>& commands)
{
    return commands.empty() ? Ztring::emptyZtring : commands.back()->getLabel();
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
    KEL_ASSERT(isUndoableElseAbandon(command), "undoCommand->isUndoable()");
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
    KEL_ASSERT(isUndoableElseAbandon(command), "redoCommand->isUndoable()");
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
    OwnedElement<Command>::takeFront(m_undo).reset();
    if (left == 0)
        announceChange();
    return left > m_maximumUndo;
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
    return UndoRedoState(getLabelOfTop(m_undo), getLabelOfTop(m_redo));
}
