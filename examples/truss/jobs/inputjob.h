// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/job.h"

#include <kel/file_kel.h>

namespace truss
{
class Document;

/// A job that brings the contents of a file into the document.
///
/// One that the user interrupts leaves the document marked as incomplete, so that no later job replaces a file by it.
class InputJob : public Job
{
public:
    /// The document outlives the job, here and with the other jobs.
    InputJob(const Ztring& title, Document& document, const Kel::File& file);

protected:
    Document& m_document;
    const Kel::File m_file;

private:
    void onInterrupt() override;
};
} // namespace truss
