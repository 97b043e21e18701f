// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/recoverjob.h"

#include "truss/document/document.h"
#include "truss/document/leftover.h"
#include "truss/model/model.h"

#include <kel/translator.h>

namespace truss
{
RecoverJob::RecoverJob(Document& document, const Kel::File& file)
    : InputJob(Translator::tr("Recovering"), document, file)
{
}

bool RecoverJob::step()
{
    m_document.replace(Leftover(m_file).recover());
    return false;
}
} // namespace truss
