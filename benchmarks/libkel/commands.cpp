// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Executing, undoing and redoing commands while one receiver takes the labels for its menu.
#include "support/commandrows.h"

#include <kel/changedreceiver.h>
#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/receiver.h>
#include <kel/undoredostate.h>
#include <kel/ztring.h>

namespace
{
class Add : public Command
{
public:
    explicit Add(int64_t& value) : m_value(value) {}
    void execute() override { m_value += 3; }
    void undo() override { m_value -= 3; }
    Ztring getLabel() const override
    {
        static const Ztring label("Move node");
        return label;
    }

private:
    int64_t& m_value;
};

class Menu : public Receiver, public ChangedReceiver
{
public:
    void changed(Bulletin&, const Bulletin& how) override
    {
        const auto& state = dynamic_cast<const UndoRedoState&>(how);
        if (state.hasUndo())
            m_length += state.getUndo().length();
        if (state.hasRedo())
            m_length += state.getRedo().length();
    }

    uint64_t m_length = 0;
};

/// A controller with its observer and a value to change, as bench::CommandRows wants it.
class Editor
{
public:
    Editor() { m_menu.observe(m_controller); }

    void execute() { m_controller.execute(new Add(m_value)); }
    void undo() { m_controller.undo(); }
    void redo() { m_controller.redo(); }
    void clear() { m_controller.clear(); }

private:
    CommandController m_controller;
    Menu m_menu;
    int64_t m_value = 0;
};

const bool registered = bench::CommandRows<Editor>::add("libkel");
} // namespace
