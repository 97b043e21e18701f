// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/wheeltask.h"

#include "truss/shell/consolestatus.h"

namespace truss
{
void WheelTask::performAction()
{
    // Asked anew each time: the timer may outlive the status.
    if (auto* const status = dynamic_cast<ConsoleStatus*>(Status::s_singleton))
        status->turnWheel();
}
} // namespace truss
