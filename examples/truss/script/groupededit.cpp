// SPDX-License-Identifier: MIT
// truss: script
#include "truss/script/groupededit.h"

#include "truss/script/editparser.h"

#include <kel/command.h>
#include <kel/problem.h>

#include <utility>

namespace truss
{
GroupedEdit::GroupedEdit(Model& model, const ScriptLine& line) : m_model(model), m_line(line) {}

GroupedEdit::~GroupedEdit() = default;

void GroupedEdit::apply()
try
{
    if (m_command != nullptr)
    {
        m_command->redo();
        return;
    }
    auto command = EditParser(m_model).parse(m_line.words);
    command->execute();
    m_command = std::move(command);
}
catch (Problem& problem)
{
    problem.annotate(m_line.place);
    throw;
}

void GroupedEdit::revert()
{
    m_command->undo();
}
} // namespace truss
