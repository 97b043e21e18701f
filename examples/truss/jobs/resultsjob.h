// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/exchange/resultswriter.h"
#include "truss/jobs/job.h"

#include <kel/file_kel.h>

namespace truss
{
class Document;

/// Writes the result of the last analysis, or one table of it, to a CSV file.
class ResultsJob : public Job
{
public:
    using Table = void (ResultsWriter::*)(const Response& response);

    ResultsJob(Document& document, const Kel::File& file, Table table);

private:
    bool step() override;

    Document& m_document;
    Kel::File m_file;
    Table m_table;
};
} // namespace truss
