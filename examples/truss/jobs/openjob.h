// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/inputjob.h"

namespace truss
{
/// Opens a saved model in place of the present one, which stays unless all of the file was read. Tells the user what a
/// save that did not end has left beside it.
class OpenJob : public InputJob
{
public:
    OpenJob(Document& document, const Kel::File& file);

private:
    bool step() override;
};
} // namespace truss
