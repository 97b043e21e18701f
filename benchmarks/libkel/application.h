// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include <kel/status.h>

/// What every application installs before it works: a Status, whose hooks do next to nothing here, and a Platform.
class BenchmarkStatus : public Status
{
public:
    /// Installs the platform as well.
    BenchmarkStatus();

    /// Stands for an event loop: only takes the percentage.
    void updateEvents(int percent) override;

private:
    int m_percent = 0;
};
