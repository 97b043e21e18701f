// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/inputjob.h"

#include <memory>

namespace truss
{
class CsvImport;

/// Adds the entities of a CSV file to the model, all of them or none.
class ImportJob : public InputJob
{
public:
    ImportJob(Document& document, const Kel::File& file);
    ~ImportJob() override;

private:
    bool step() override;
    int getPercent() const override;

    std::unique_ptr<CsvImport> m_import; // null before the first step
};
} // namespace truss
