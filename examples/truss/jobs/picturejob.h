// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/analysis/structure.h"
#include "truss/jobs/job.h"

#include <kel/file_kel.h>

#include <memory>

namespace truss
{
class Document;
class OutputFile;
class TrussPicture;

/// Draws the truss, with its deflected shape if it has been solved.
class PictureJob : public Job
{
public:
    PictureJob(Document& document, const Kel::File& file);
    ~PictureJob() override;

private:
    bool step() override;
    int getPercent() const override;
    void begin();

    Document& m_document;
    Kel::File m_file;
    // Null before the first step.
    std::unique_ptr<Structure> m_structure;
    std::unique_ptr<OutputFile> m_output;
    std::unique_ptr<TrussPicture> m_picture;
};
} // namespace truss
