// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#pragma once

#include <kel/bulletin.h>
#include <kel/ownedqueue.h>

#include <deque>

class Command;
class UndoRedoState;

/// Executes the user's commands and keeps the undo and redo stacks.
///
/// Every change of the stacks that a user can see is announced with a ChangedNotifier whose "how" is an
/// UndoRedoState; what an observer throws then passes out, with the stacks already changed, and in the place of what a
/// failing command threw. Commands may use the controller from inside their own operations: a command executed by
/// another one ends up below it.
///
///     CommandController& controller = DynamicFactory::getSingleton().getOrCreate<CommandController>();
///     controller.setMaximumUndo(100);
///     controller.execute(new MoveNode(node, position));
///     while (controller.pruneUndo())
///         ;
///     controller.undo();
///     controller.redo();
class KEL_API CommandController : public Bulletin
{
public:
    /// Carries the key of getStaticKey; the stacks are empty and the bound is 0.
    CommandController();

    /// Deletes all commands, those of the undo stack first, and announces nothing.
    ~CommandController() override;

    CommandController(const CommandController&) = delete;
    CommandController& operator=(const CommandController&) = delete;

    /// The key "CommandController".
    static const BulletinKey& getStaticKey();

    /// @name Doing, undoing, redoing
    /// @{

    /// Executes a command and owns it from then on.
    ///
    /// A command that throws is deleted, and the exception passes through; neither stack changes. So is, after its
    /// execution, a command that is not undoable: it leaves no trace here. Any other command empties the redo stack
    /// and becomes the top of the undo stack, which is not pruned.
    void execute(Command* command);

    /// Undoes the top of the undo stack and moves it to the redo stack.
    ///
    /// With nothing to undo the assertion "!m_undo.empty()" fails. When the command throws, it is deleted with all
    /// that is left on the undo stack, the loss is announced, and the exception passes through. A command that is not
    /// undoable any more is taken off the stack and fails the assertion "undoCommand->isUndoable()" before it is
    /// asked to undo; it is not deleted.
    void undo();

    /// Redoes the top of the redo stack and moves it to the undo stack.
    ///
    /// With nothing to redo the assertion "!m_redo.empty()" fails. When the command throws, it is deleted with all
    /// that is left on the redo stack, the loss is announced, and the exception passes through. A command that is not
    /// undoable any more fails the assertion "redoCommand->isUndoable()" after it was redone; it is off the stack and
    /// not deleted.
    void redo();

    /// @}
    /// @name Bounding and clearing
    /// @{

    /// Sets how many commands pruneUndo leaves on the undo stack; prunes nothing. The bound is 0 until it is set.
    void setMaximumUndo(unsigned int maximum);

    /// Deletes the oldest command of an undo stack that is over the bound, and returns whether it is still over the
    /// bound; announces the change only when the stack is empty then, since otherwise no label has changed.
    bool pruneUndo();

    /// Deletes the commands of one stack and announces nothing.
    void clearUndo();
    void clearRedo();

    /// Deletes the commands of both stacks, those of the undo stack first, and announces the change. A command that is
    /// just being executed, undone or redone is on no stack, is not reached, and goes to its stack afterwards.
    void clear();

    /// Deletes the commands of a queue from front to back, passing over null, and empties it.
    static void clearCommands(std::deque<Command*>& commands);

    /// @}
    /// @name Announcing
    /// @{

    /// Sends the state of the stacks to the observers of the controller.
    void announceChange();

    /// The labels of the commands on top of the stacks; empty for an empty stack.
    UndoRedoState getUndoRedoState() const;

    /// @}

private:
    unsigned int m_maximumUndo = 0;
    OwnedQueue<Command> m_undo; // owned; the most recent command is at the back
    OwnedQueue<Command> m_redo; // owned; the most recently undone command is at the back
};
