// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/analysis/analysis.h"

#include <kel/batchtask.h>

#include <memory>

namespace truss
{
class Document;
class Job;
class Study;

/// Solves all cases of a study, one after the other or taking turns, and then has it reported. It varies a copy, the
/// model stays as it is. An interruption drops the cases that are left, and the report.
class StudyTask : public BatchTask
{
public:
    /// The document outlives the task. The report is the last sub-task.
    StudyTask(Document& document, std::shared_ptr<Study> study, Analysis::Method method, bool takeTurns,
              std::unique_ptr<Job> report);
    ~StudyTask() override;

    void performAction() override;

private:
    void addCases(std::unique_ptr<Job> report);

    Document& m_document;
    std::shared_ptr<Study> m_study;
    Analysis::Method m_method;
    std::unique_ptr<Job> m_report; // until the first step, which adds the sub-tasks
};
} // namespace truss
