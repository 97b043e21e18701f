// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/job.h"

namespace Kel
{
class File;
}

namespace truss
{
class Document;

/// Pipes the model as CSV through an outside program. What that writes on its standard output is logged; what it writes
/// on its error output is a Problem.
class CheckJob : public Job
{
public:
    CheckJob(Document& document, const Ztring& program);

private:
    bool step() override;
    void writeModel(const Kel::File& file) const;

    Document& m_document;
    Ztring m_program;
};
} // namespace truss
