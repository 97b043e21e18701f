// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/importjob.h"

#include "truss/document/document.h"
#include "truss/edits/importcommand.h"
#include "truss/exchange/csvimport.h"
#include "truss/model/model.h"

#include <kel/translator.h>

namespace truss
{
namespace
{
constexpr unsigned linesPerStep = 1000;
} // namespace

ImportJob::ImportJob(Document& document, const Kel::File& file) : InputJob(Translator::tr("Importing"), document, file)
{
}

ImportJob::~ImportJob() = default;

bool ImportJob::step()
{
    if (m_import == nullptr)
        m_import = std::make_unique<CsvImport>(m_document.getModel(), m_file);
    if (m_import->readLines(linesPerStep))
        return true;
    auto command = m_import->takeCommand();
    if (!command->isEmpty())
        m_document.execute(std::move(command));
    return false;
}

int ImportJob::getPercent() const
{
    return m_import != nullptr ? m_import->getPercent() : 0;
}
} // namespace truss
