// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/savejob.h"

#include "truss/document/document.h"
#include "truss/document/documentfile.h"
#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/translator.h>

#include <filesystem>

namespace truss
{
SaveJob::SaveJob(Document& document, const Kel::File& file)
    : Job(Translator::tr("Saving")),
      m_document(document),
      m_file(file)
{
}

bool SaveJob::step()
{
    if (m_document.isIncomplete() && std::filesystem::exists(m_file.getPath().toUtf8()))
        Problem::throwProblem(
            fill(Translator::tr("'%1' is not replaced: the model was not read completely"), m_file.getPath()));
    DocumentFile::save(m_document.getModel(), m_file);
    return false;
}
} // namespace truss
