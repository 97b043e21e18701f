// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/viewjob.h"

#include "truss/platform/capturedprogram.h"

#include <kel/translator.h>

namespace truss
{
ViewJob::ViewJob(const Kel::File& picture) : Job(Translator::tr("Opening the picture")), m_picture(picture) {}

bool ViewJob::step()
{
    CapturedProgram().run("xdg-open", m_picture); // what it has to say is of interest only if it fails
    return false;
}
} // namespace truss
