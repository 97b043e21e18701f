// SPDX-License-Identifier: MIT
// truss: script
#pragma once

#include <kel/changedreceiver.h>
#include <kel/receiver.h>
#include <kel/undoredostate.h>

class CommandController;

namespace truss
{
/// Hears from the CommandController what the Undo and Redo entries of a menu would say.
class UndoRedoLabels : public Receiver, public ChangedReceiver
{
public:
    explicit UndoRedoLabels(CommandController& controller);

    /// For example "Undo: Move node 'n1', Redo: -".
    Ztring getText() const;

private:
    void changed(Bulletin& what, const Bulletin& how) override;

    UndoRedoState m_state;
};
} // namespace truss
