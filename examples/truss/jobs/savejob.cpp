// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/savejob.h"

#include "truss/document/document.h"
#include "truss/document/documentfile.h"

#include <kel/translator.h>

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
    DocumentFile::save(m_document.getModel(), m_file);
    return false;
}
} // namespace truss
