// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include <kel/command.h>
#include <kel/mementos.h>

namespace truss
{
/// A command that is made of steps, and the base of all commands of this application.
///
/// The constructors of the subclasses check the edit, fail with a Problem where it must not be, and collect the steps;
/// nothing has changed until the CommandController executes the command. When a step fails all the same, those before
/// it are undone and the problem passes on. When the user interrupts, the steps that ran stay and can be undone.
class CompositeCommand : public Command
{
public:
    explicit CompositeCommand(const Ztring& label) : m_label(label) {}

    /// Appends a step and owns it from then on. The steps have to take being undone without having been executed.
    void add(Memento* step) { m_steps.add(step); }
    bool isEmpty() const { return m_steps.empty(); }

    void execute() override;
    void undo() override { m_steps.undo(); }
    void redo() override;
    Ztring getLabel() const override { return m_label; }

private:
    /// Takes back what a failed run has left, since the library rolls nothing back.
    void runWhole(void (Mementos::*run)());

    Ztring m_label;
    Mementos m_steps;
};
} // namespace truss
