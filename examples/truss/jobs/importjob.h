// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/job.h"

#include <kel/file_kel.h>

#include <memory>

namespace truss
{
class CsvImport;
class Document;

/// Adds the entities of a CSV file to the model, all of them or none.
class ImportJob : public Job
{
public:
    ImportJob(Document& document, const Kel::File& file);
    ~ImportJob() override;

private:
    bool step() override;
    int getPercent() const override;

    Document& m_document;
    Kel::File m_file;
    std::unique_ptr<CsvImport> m_import; // null before the first step
};
} // namespace truss
