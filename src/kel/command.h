// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#pragma once

#include <kel/memento.h>
#include <kel/ztring.h>

/// A user's action: a memento that the CommandController executes and keeps for undo.
///
///     class RenameCommand : public Command
///     {
///     public:
///         RenameCommand(Part& part, const Ztring& name) : m_part(part), m_name(name) {}
///         void execute() override { m_part.swapName(m_name); }
///         void undo() override { m_part.swapName(m_name); }
///         Ztring getLabel() const override { return Translator::tr("Rename"); }
///         ...
///     };
///
///     DynamicFactory::getSingleton().getOrCreate<CommandController>().execute(new RenameCommand(part, "Beam 7"));
class KEL_API Command : public Memento
{
public:
    /// Asked after execute, before undo and after redo. A command that answers false is executed once, then deleted,
    /// and never reaches a stack. The base answers true. It should not throw: after execute the command would be
    /// deleted although it is done; otherwise it is left on the undo stack.
    virtual bool isUndoable() const { return true; }

    /// Asked whenever the stacks are announced, while the command is on top of one: the text behind "Undo" or "Redo"
    /// in a menu. An empty label makes the menu show nothing to undo or redo. What it throws passes out of the
    /// operation that has changed the stacks already.
    virtual Ztring getLabel() const = 0;
};
