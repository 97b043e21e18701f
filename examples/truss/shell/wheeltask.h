// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include <kel/task.h>

namespace truss
{
/// Run by a timer: turns the wheel that shows that the program is alive, also while it waits for something.
class WheelTask : public Task
{
public:
    void performAction() override;
    bool repeat() override { return true; }
};
} // namespace truss
