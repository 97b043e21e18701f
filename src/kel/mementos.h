// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#pragma once

#include <kel/array.h>
#include <kel/memento.h>

/// An ordered list of mementos that is executed, undone and redone as one step.
///
/// Progress is reported to the Status, which must exist; each of execute, undo and redo fails the assertion
/// "!m_mementos.empty()" on an empty list.
///
///     Mementos steps;
///     steps.add(new RemoveElements(mesh));
///     steps.add(new RefineNodes(mesh));
///     steps.execute();
///     steps.undo(); // RefineNodes first
class KEL_API Mementos : public Memento
{
public:
    Mementos();

    /// Deletes the mementos in the order in which they were added.
    ~Mementos() override;

    /// Appends a memento and owns it from then on. Neither null nor a memento that is in the list already is checked
    /// for; both are errors of the caller.
    void add(Memento* memento);

    /// Executes the mementos in order and calls Status::checkInterrupt after each one.
    ///
    /// The percentage is the one that Status::getPercentComplete then gives plus a share of the rest; the last memento
    /// stays short of 100. An Interrupted that a memento or the check throws is not passed on: the mementos that did
    /// not run are deleted and the list keeps those that ran, the interrupted one included, so that undo takes back
    /// just these. Any other exception passes through and leaves the list whole.
    void execute() override;

    /// Undoes the mementos, last added first, with progress but without interruption. When one throws, the exception
    /// passes through and the list stays in reversed order.
    void undo() override;

    /// Redoes the mementos in order, with progress but without interruption.
    void redo() override;

    unsigned int size() const { return m_mementos.size(); }
    bool empty() const { return m_mementos.empty(); }

private:
    void truncate(unsigned int count);

    Array<Memento*> m_mementos;
};
