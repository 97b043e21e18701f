// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/job.h"

#include <kel/file_kel.h>

#include <memory>
#include <optional>

namespace truss
{
class Study;

/// Writes the results of a study, as a CSV table and as a curve, when all its cases have ended. It stands last among
/// the cases and, where they take turns, passes until they are done.
class StudyReport : public Job
{
public:
    StudyReport(std::shared_ptr<Study> study, const std::optional<Kel::File>& table,
                const std::optional<Kel::File>& plot);

private:
    bool step() override;
    int getPercent() const override;
    void writeTable(const Kel::File& file) const;
    void writePlot(const Kel::File& file) const;
    void logTable() const;

    std::shared_ptr<Study> m_study;
    std::optional<Kel::File> m_table;
    std::optional<Kel::File> m_plot;
};
} // namespace truss
