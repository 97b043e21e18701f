// SPDX-License-Identifier: MIT
// libkel: benchmarks
// The undo stack of Qt, whose labels somebody takes for a menu.
#include "support/commandrows.h"

#include <QString>
#include <QUndoCommand>
#include <QUndoStack>

namespace
{
const QString& label()
{
    static const QString label("Move node");
    return label;
}

class Add : public QUndoCommand
{
public:
    explicit Add(int64_t& value) : QUndoCommand(label()), m_value(value) {}
    void redo() override { m_value += 3; }
    void undo() override { m_value -= 3; }

private:
    int64_t& m_value;
};

class Menu : public QObject
{
    Q_OBJECT

public:
    void onUndoText(const QString& text) { m_length += static_cast<uint64_t>(text.length()); }
    void onRedoText(const QString& text) { m_length += static_cast<uint64_t>(text.length()); }

    uint64_t m_length = 0;
};

class Editor
{
public:
    Editor()
    {
        QObject::connect(&m_stack, &QUndoStack::undoTextChanged, &m_menu, &Menu::onUndoText, Qt::DirectConnection);
        QObject::connect(&m_stack, &QUndoStack::redoTextChanged, &m_menu, &Menu::onRedoText, Qt::DirectConnection);
    }

    void execute() { m_stack.push(new Add(m_value)); }
    void undo() { m_stack.undo(); }
    void redo() { m_stack.redo(); }
    void clear() { m_stack.clear(); }

private:
    Menu m_menu;
    QUndoStack m_stack;
    int64_t m_value = 0;
};

const bool registered = bench::CommandRows<Editor>::add("qt");
} // namespace

#include "qt_undo.moc"
