// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/job.h"

#include <kel/file_kel.h>

namespace truss
{
class Document;

/// Saves the model. A save that fails or is interrupted leaves the old file as it was. A model that was not read
/// completely, since the user interrupted that, replaces no file.
class SaveJob : public Job
{
public:
    SaveJob(Document& document, const Kel::File& file);

private:
    bool step() override;

    Document& m_document;
    Kel::File m_file;
};
} // namespace truss
