// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#include <kel/commandcontroller.h>

#include <kel/changednotifier.h>
#include <kel/command.h>
#include <kel/ownedqueue.h>
#include <kel/undoredostate.h>
#include <kel/zassert.h>

#include <memory>
#include <utility>

namespace
{
// A command that has gone back on its word is not deleted: nobody can tell what still leans on it.
bool isUndoableElseAbandon(std::unique_ptr<Command>& command)
{
    if (command->isUndoable())
        return true;
    static_cast<void>(command.release());
    return false;
}

Ztring getLabelOfTop(const std::deque<Command*>& commands)
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
    std::unique_ptr<Command> owned(command);
    owned->execute();
    if (!owned->isUndoable())
        return;
    clearRedo();
    pushBackOwned(m_undo, std::move(owned));
    announceChange();
}

void CommandController::undo()
{
    KEL_ASSERT(!m_undo.empty(), "!m_undo.empty()");
    std::unique_ptr<Command> command = popBackOwned(m_undo);
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
    pushBackOwned(m_redo, std::move(command));
    announceChange();
}

void CommandController::redo()
{
    KEL_ASSERT(!m_redo.empty(), "!m_redo.empty()");
    std::unique_ptr<Command> command = popBackOwned(m_redo);
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
    pushBackOwned(m_undo, std::move(command));
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
    popFrontOwned(m_undo).reset();
    if (left == 0)
        announceChange();
    return left > m_maximumUndo;
}

void CommandController::clearUndo()
{
    clearCommands(m_undo);
}

void CommandController::clearRedo()
{
    clearCommands(m_redo);
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
