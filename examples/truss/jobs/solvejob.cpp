// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/solvejob.h"

#include "truss/document/document.h"
#include "truss/model/model.h"
#include "truss/text/text.h"

#include <kel/log_kel.h>
#include <kel/translator.h>

namespace truss
{
namespace
{
Ztring describe(const Response& response)
{
    const Structure& structure = response.structure;
    const auto [joint, axis, displacement] = response.findLargestDisplacement();
    const std::size_t member = response.findLargestStress();
    Ztring text = fill(Translator::tr("Weight: %1"), toText(structure.getWeight()));
    text += "\n";
    text += fill(Translator::tr("Largest displacement: %1 along %2 at node '%3'"), toText(displacement),
                 toText("xyz"[axis]), structure.getJoints()[joint].name);
    text += "\n";
    text += fill(Translator::tr("Largest stress: %1 in bar '%2'"), toText(response.stresses[member]),
                 structure.getMembers()[member].name);
    return text;
}
} // namespace

SolveJob::SolveJob(Document& document, Analysis::Method method)
    : Job(Translator::tr("Solving")),
      m_document(document),
      m_method(method)
{
}

SolveJob::~SolveJob() = default;

bool SolveJob::step()
{
    if (m_analysis == nullptr)
        begin();
    if (m_analysis->step())
        return true;
    finish();
    return false;
}

int SolveJob::getPercent() const
{
    return m_analysis != nullptr ? m_analysis->getPercent() : 0;
}

void SolveJob::begin()
{
    Structure structure(m_document.getModel());
    const auto size = static_cast<unsigned>(structure.getMembers().size());
    m_info = std::make_unique<Parallel::Info>("Solving", size, Parallel::getSingleton()->getMaxThreadCount());
    m_analysis = std::make_unique<Analysis>(std::move(structure), m_method);
}

void SolveJob::finish()
{
    m_info.reset();
    auto response = m_analysis->takeResponse();
    Kel::Log::getSingleton()->append(describe(*response), Message::Info);
    m_document.setResponse(std::move(response));
}
} // namespace truss
