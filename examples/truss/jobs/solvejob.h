// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/analysis/analysis.h"
#include "truss/jobs/job.h"

#include <kel/parallel.h>

#include <memory>

namespace truss
{
class Document;

/// Solves the model and logs a summary. An interrupted analysis leaves no result.
class SolveJob : public Job
{
public:
    SolveJob(Document& document, Analysis::Method method);
    ~SolveJob() override;

private:
    bool step() override;
    int getPercent() const override;
    void begin();
    void finish();

    Document& m_document;
    Analysis::Method m_method;
    // Null before the first step.
    std::unique_ptr<Parallel::Info> m_info; // logs size and duration when diagnostics are on
    std::unique_ptr<Analysis> m_analysis;
};
} // namespace truss
