// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/studytask.h"

#include "truss/document/document.h"
#include "truss/jobs/study.h"
#include "truss/jobs/studycase.h"
#include "truss/model/model.h"

#include <utility>

namespace truss
{
StudyTask::StudyTask(Document& document, std::shared_ptr<Study> study, Analysis::Method method, bool takeTurns,
                     std::unique_ptr<Job> report)
    : BatchTask(takeTurns),
      m_document(document),
      m_study(std::move(study)),
      m_method(method),
      m_report(std::move(report))
{
    m_quiet = true;
}

StudyTask::~StudyTask() = default;

void StudyTask::performAction()
{
    if (m_report != nullptr)
        addCases(std::move(m_report));
    BatchTask::performAction();
}

// Only now, since the model may have been read just before.
void StudyTask::addCases(std::unique_ptr<Job> report)
try
{
    const auto structure = std::make_shared<const Structure>(m_document.getModel());
    structure->findMember(m_study->getBar()); // one that is missing is a Problem once, not in each case
    for (std::size_t row = 0; row < m_study->getRows().size(); ++row)
        add(new StudyCase(m_study, structure, row, m_method));
    add(report.release());
}
catch (...)
{
    cleanUp(); // a part of the cases makes no study
    throw;
}
} // namespace truss
