// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/inputjob.h"

#include "truss/document/document.h"

namespace truss
{
InputJob::InputJob(const Ztring& title, Document& document, const Kel::File& file)
    : Job(title),
      m_document(document),
      m_file(file)
{
}

void InputJob::onInterrupt()
{
    m_document.setIncomplete();
}
} // namespace truss
