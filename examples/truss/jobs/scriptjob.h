// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/inputjob.h"

#include <memory>

namespace truss
{
class Script;

/// Runs the edits of a script, one line a step.
class ScriptJob : public InputJob
{
public:
    ScriptJob(Document& document, const Kel::File& file);
    ~ScriptJob() override;

private:
    bool step() override;
    int getPercent() const override;

    std::unique_ptr<Script> m_script; // null before the first step
};
} // namespace truss
