// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/job.h"

#include <kel/file_kel.h>

namespace truss
{
class Document;

/// Puts what a save that did not end has left in the place of the saved model, and opens it in place of the present
/// one.
class RecoverJob : public Job
{
public:
    /// The document outlives the job, here and with the other jobs.
    RecoverJob(Document& document, const Kel::File& file);

private:
    bool step() override;

    Document& m_document;
    Kel::File m_file;
};
} // namespace truss
