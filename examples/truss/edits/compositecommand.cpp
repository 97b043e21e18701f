// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/compositecommand.h"

namespace truss
{
void CompositeCommand::add(Memento* step)
{
    m_steps.add(step);
    m_order.push_back(step);
}

void CompositeCommand::execute()
{
    runWhole(&Mementos::execute);
    if (m_steps.size() < m_order.size()) // the user interrupted
        m_order.resize(m_steps.size());
}

void CompositeCommand::undo()
try
{
    m_steps.undo();
}
catch (...)
{
    for (Memento* const step : m_order)
        step->redo();
    throw;
}

void CompositeCommand::redo()
{
    runWhole(&Mementos::redo);
}

void CompositeCommand::runWhole(void (Mementos::*run)())
{
    try
    {
        (m_steps.*run)();
    }
    catch (...)
    {
        m_steps.undo();
        throw;
    }
}
} // namespace truss
