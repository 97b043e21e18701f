// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#pragma once

#include <kel/kelapi.h>

/// One reversible step of work.
///
/// The order of calls is execute, then any number of pairs of undo and redo. A memento is made with `new`; whoever it
/// is handed to (Mementos::add, CommandController::execute) deletes it.
class KEL_API Memento
{
public:
    Memento() = default;
    virtual ~Memento() = default;

    Memento(const Memento&) = delete;
    Memento& operator=(const Memento&) = delete;

    /// Does the step; called first and once, but for the calls that redo makes.
    virtual void execute() = 0;

    /// Takes the step back; called after execute or redo. The base does nothing.
    virtual void undo() {}

    /// Does the step again; called after undo. The base calls execute.
    virtual void redo() { execute(); }
};
