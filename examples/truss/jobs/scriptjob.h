// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/job.h"

#include <kel/file_kel.h>

#include <memory>

namespace truss
{
class Document;
class Script;

/// Runs the edits of a script, one line a step.
class ScriptJob : public Job
{
public:
    ScriptJob(Document& document, const Kel::File& file);
    ~ScriptJob() override;

private:
    bool step() override;
    int getPercent() const override;

    Document& m_document;
    Kel::File m_file;
    std::unique_ptr<Script> m_script; // null before the first step
};
} // namespace truss
