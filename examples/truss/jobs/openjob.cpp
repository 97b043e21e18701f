// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/openjob.h"

#include "truss/document/document.h"
#include "truss/document/documentfile.h"
#include "truss/document/leftover.h"
#include "truss/model/model.h"

#include <kel/translator.h>

namespace truss
{
OpenJob::OpenJob(Document& document, const Kel::File& file) : InputJob(Translator::tr("Opening"), document, file) {}

bool OpenJob::step()
{
    Leftover(m_file).report(); // first: the document itself may be missing
    m_document.replace(DocumentFile::open(m_file));
    return false;
}
} // namespace truss
