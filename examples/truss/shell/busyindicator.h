// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include <kel/taskslistener.h>

namespace truss
{
class ConsoleStatus;

/// Shows on the terminal whether work is going on: it hears of the beginning and the end of each run of the task queue.
class BusyIndicator : public TasksListener
{
public:
    /// The status outlives the indicator.
    explicit BusyIndicator(ConsoleStatus& status);
    BusyIndicator(const BusyIndicator&) = delete;
    BusyIndicator& operator=(const BusyIndicator&) = delete;
    ~BusyIndicator() override;

private:
    void tasksChanged(bool busy) override;
    void enableMenu(bool enable) override;

    ConsoleStatus& m_status;
};
} // namespace truss
