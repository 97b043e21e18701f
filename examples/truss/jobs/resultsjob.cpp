// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/resultsjob.h"

#include "truss/document/document.h"
#include "truss/exchange/outputfile.h"

#include <kel/translator.h>

namespace truss
{
ResultsJob::ResultsJob(Document& document, const Kel::File& file, Table table)
    : Job(Translator::tr("Writing results")),
      m_document(document),
      m_file(file),
      m_table(table)
{
}

bool ResultsJob::step()
{
    const Response& response = m_document.requireResponse();
    OutputFile output(m_file);
    ResultsWriter writer(output.getOut());
    (writer.*m_table)(response);
    output.close();
    return false;
}
} // namespace truss
