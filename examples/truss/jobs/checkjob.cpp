// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/checkjob.h"

#include "truss/document/document.h"
#include "truss/exchange/csvexport.h"
#include "truss/model/model.h"
#include "truss/platform/capturedprogram.h"
#include "truss/platform/temporaryfile.h"
#include "truss/text/text.h"

#include <kel/file_kel.h>
#include <kel/interrupted.h>
#include <kel/log_kel.h>
#include <kel/translator.h>

#include <fstream>

namespace truss
{
CheckJob::CheckJob(Document& document, const Ztring& program)
    : Job(Translator::tr("Checking")),
      m_document(document),
      m_program(program)
{
}

bool CheckJob::step()
try
{
    const TemporaryFile input;
    writeModel(input.getFile());
    CapturedProgram checker;
    checker.setInput(input.getFile());
    checker.run(m_program, Kel::File(Ztring()));
    for (std::string line; checker.getOutput().getMore(line);)
        Kel::Log::getSingleton()->append(fromUtf8(line), Message::Info);
    return false;
}
catch (const Interrupted&)
{
    throw;
}
catch (Problem& problem)
{
    problem.annotate(fill(Translator::tr("Checking with '%1' failed"), m_program));
    throw;
}

void CheckJob::writeModel(const Kel::File& file) const
{
    std::ofstream out;
    file.open(out);
    CsvExport(out).write(m_document.getModel());
    out.close();
    if (!out)
        file.throwWritingCorrupt();
}
} // namespace truss
