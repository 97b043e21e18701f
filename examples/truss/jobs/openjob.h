// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/job.h"

#include <kel/file_kel.h>

namespace truss
{
class Document;

/// Opens a saved model in place of the present one, which stays unless all of the file was read. Tells the user what a
/// save that did not end has left beside it.
class OpenJob : public Job
{
public:
    /// The document outlives the job, here and with the other jobs.
    OpenJob(Document& document, const Kel::File& file);

private:
    bool step() override;

    Document& m_document;
    Kel::File m_file;
};
} // namespace truss
