// SPDX-License-Identifier: MIT
// truss: script
#pragma once

#include "truss/edits/step.h"
#include "truss/script/scriptline.h"

#include <memory>

class Command;

namespace truss
{
class Model;

/// One edit within a group. It is made into a command only when its turn comes, because it may refer to what earlier
/// edits of the group add.
class GroupedEdit : public Step
{
public:
    GroupedEdit(Model& model, const ScriptLine& line);
    ~GroupedEdit() override;

private:
    void apply() override;
    void revert() override;

    Model& m_model;
    ScriptLine m_line;
    std::unique_ptr<Command> m_command; // null until it was executed for the first time
};
} // namespace truss
