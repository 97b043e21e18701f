// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/job.h"

#include <kel/file_kel.h>

namespace truss
{
/// Shows a picture with the program that the desktop has for it.
class ViewJob : public Job
{
public:
    explicit ViewJob(const Kel::File& picture);

private:
    bool step() override;

    Kel::File m_picture;
};
} // namespace truss
