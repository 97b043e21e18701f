// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/picturejob.h"

#include "truss/document/document.h"
#include "truss/exchange/outputfile.h"
#include "truss/model/model.h"
#include "truss/picture/trusspicture.h"

#include <kel/problem.h>
#include <kel/translator.h>

namespace truss
{
namespace
{
constexpr std::size_t barsPerStep = 1000;
} // namespace

PictureJob::PictureJob(Document& document, const Kel::File& file)
    : Job(Translator::tr("Drawing")),
      m_document(document),
      m_file(file)
{
}

PictureJob::~PictureJob() = default;

bool PictureJob::step()
{
    if (m_picture == nullptr)
        begin();
    if (m_picture->draw(barsPerStep))
        return true;
    m_output->close();
    return false;
}

int PictureJob::getPercent() const
{
    return m_picture != nullptr ? m_picture->getPercent() : 0;
}

void PictureJob::begin()
{
    m_structure = std::make_unique<Structure>(m_document.getModel());
    m_output = std::make_unique<OutputFile>(m_file);
    m_picture = std::make_unique<TrussPicture>(m_output->getOut(), *m_structure, m_document.getResponse());
}
} // namespace truss
