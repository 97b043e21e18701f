// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/sectionstep.h"

#include "truss/model/bar.h"
#include "truss/model/model.h"

#include <utility>

namespace truss
{
SectionStep::SectionStep(Model& model, Bar& bar, const Section& section)
    : m_model(model),
      m_bar(bar),
      m_section(section)
{
}

void SectionStep::exchange()
{
    std::swap(m_bar.m_section, m_section);
    try
    {
        m_model.announceChange(m_bar);
    }
    catch (...)
    {
        std::swap(m_bar.m_section, m_section);
        throw;
    }
}
} // namespace truss
