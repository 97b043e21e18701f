// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/analysis/analysis.h"
#include "truss/jobs/job.h"

#include <cstddef>
#include <memory>

namespace truss
{
class Study;

/// Solves the structure with one of the areas of a study. Once a case has failed, the others do nothing.
class StudyCase : public Job
{
public:
    /// The structure is shared by the cases and stays as it is.
    StudyCase(std::shared_ptr<Study> study, std::shared_ptr<const Structure> structure, std::size_t row,
              Analysis::Method method);
    ~StudyCase() override;

private:
    bool step() override;
    int getPercent() const override;
    void begin();
    bool solve();

    std::shared_ptr<Study> m_study;
    std::shared_ptr<const Structure> m_structure;
    std::size_t m_row;
    Analysis::Method m_method;
    std::unique_ptr<Analysis> m_analysis; // null before the first step
    bool m_isSolved = false;
};
} // namespace truss
