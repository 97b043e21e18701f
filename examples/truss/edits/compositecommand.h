// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include <kel/command.h>
#include <kel/mementos.h>

#include <vector>

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

    /// Appends a step and owns it from then on. The steps have to take being undone without having been
    /// executed, and being redone without having been undone.
    void add(Memento* step);
    bool isEmpty() const { return m_steps.empty(); }

    void execute() override;
    /// When a step cannot be undone, those undone before it are done again and the problem passes on.
    void undo() override;
    void redo() override;
    Ztring getLabel() const override { return m_label; }

private:
    /// Takes back what a failed run has left, since the library rolls nothing back.
    void runWhole(void (Mementos::*run)());

    Ztring m_label;
    Mementos m_steps;
    std::vector<Memento*> m_order; // of the steps, which an undo that fails leaves in another one
};
} // namespace truss
