// SPDX-License-Identifier: MIT
// Undoing a command: edits are commands, which the controller executes, undoes and redoes.
// A receiver hears what the Undo and Redo entries of a menu would say.
#include <kel/changedreceiver.h>
#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/dynamicfactory.h>
#include <kel/receiver.h>
#include <kel/undoredostate.h>

#include <iostream>
#include <utility>

namespace
{
struct Bar
{
    double area = 1;
};

class AreaCommand : public Command
{
public:
    AreaCommand(Bar& bar, double area) : m_bar(bar), m_area(area) {}

    void execute() override { std::swap(m_bar.area, m_area); }
    void undo() override { std::swap(m_bar.area, m_area); }
    Ztring getLabel() const override { return "Change area"; }

private:
    Bar& m_bar;
    double m_area; // the one that the bar does not have now
};

class Menu : public Receiver, public ChangedReceiver
{
    void changed(Bulletin&, const Bulletin& how) override
    {
        const auto& state = dynamic_cast<const UndoRedoState&>(how);
        std::cout << "Undo " << (state.hasUndo() ? state.getUndo() : "-") << ", Redo "
                  << (state.hasRedo() ? state.getRedo() : "-") << '\n';
    }
};
} // namespace

int main()
{
    CommandController& controller = DynamicFactory::getSingleton().getOrCreate<CommandController>();
    Menu menu;
    menu.observe(controller);

    Bar bar;
    controller.execute(new AreaCommand(bar, 4)); // the controller owns it now
    std::cout << "area " << bar.area << '\n';
    controller.undo();
    std::cout << "area " << bar.area << '\n';
    controller.redo();
    std::cout << "area " << bar.area << '\n';
    controller.clear(); // the commands refer to a bar that goes now
}
