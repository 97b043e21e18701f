// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/scriptjob.h"

#include "truss/document/document.h"
#include "truss/script/script.h"

#include <kel/translator.h>

namespace truss
{
ScriptJob::ScriptJob(Document& document, const Kel::File& file)
    : InputJob(Translator::tr("Running the script"), document, file)
{
}

ScriptJob::~ScriptJob() = default;

bool ScriptJob::step()
{
    if (m_script == nullptr)
        m_script = std::make_unique<Script>(m_document, m_file);
    return m_script->runLine();
}

int ScriptJob::getPercent() const
{
    return m_script != nullptr ? m_script->getPercent() : 0;
}
} // namespace truss
