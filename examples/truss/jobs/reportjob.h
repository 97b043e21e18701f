// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/job.h"

class FormDataPoster;

namespace truss
{
class Document;

/// Posts a bug report with the document to a server and logs the server's reply. Can be interrupted while the report is
/// prepared and while it is sent.
class ReportJob : public Job
{
public:
    ReportJob(Document& document, const Ztring& address);

private:
    bool step() override;
    void addFields(FormDataPoster& form) const;
    void addDocument(FormDataPoster& form) const;

    Document& m_document;
    Ztring m_address;
};
} // namespace truss
