// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include "truss/jobs/inputjob.h"

namespace truss
{
/// Puts what a save that did not end has left in the place of the saved model, and opens it in place of the present
/// one.
class RecoverJob : public InputJob
{
public:
    RecoverJob(Document& document, const Kel::File& file);

private:
    bool step() override;
};
} // namespace truss
