// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include <kel/memento.h>

namespace truss
{
/// The smallest reversible change of the model; commands are made of steps.
///
/// undo() of a step that was not executed does nothing, so a composite that failed halfway takes back just what it did;
/// nor does redo() of one that was not undone, so a composite that was undone halfway does just that again.
class Step : public Memento
{
public:
    void execute() final;
    void undo() final;

private:
    /// Does the change, or throws and leaves the model as it was.
    virtual void apply() = 0;
    /// Takes it back.
    virtual void revert() = 0;

    bool m_done = false;
};
} // namespace truss
