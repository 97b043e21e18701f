// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/studycase.h"

#include "truss/jobs/study.h"
#include "truss/text/text.h"

#include <kel/translator.h>

#include <utility>

namespace truss
{
StudyCase::StudyCase(std::shared_ptr<Study> study, std::shared_ptr<const Structure> structure, std::size_t row,
                     Analysis::Method method)
    : Job(fill(Translator::tr("Solving case %1"), toText(row + 1))),
      m_study(std::move(study)),
      m_structure(std::move(structure)),
      m_row(row),
      m_method(method)
{
}

// Only here, since a job can also end before its step; the report would wait for it for ever.
StudyCase::~StudyCase()
{
    m_study->noteEnd(!m_isSolved);
}

bool StudyCase::step()
{
    return !m_study->hasFailed() && solve();
}

int StudyCase::getPercent() const
{
    return m_study->getPercent();
}

void StudyCase::begin()
{
    Structure varied(*m_structure);
    varied.setArea(varied.findMember(m_study->getBar()), m_study->getRows()[m_row].area);
    m_analysis = std::make_unique<Analysis>(std::move(varied), m_method);
}

bool StudyCase::solve()
{
    if (m_analysis == nullptr)
    {
        if (!m_study->begin())
            return true; // its turn comes again
        begin();
    }
    if (m_analysis->step())
        return true;
    m_study->setResult(m_row, *m_analysis->takeResponse());
    m_isSolved = true;
    return false;
}
} // namespace truss
