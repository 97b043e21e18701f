// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include <csignal>

namespace truss
{
/// Notes Ctrl-C while it lives, in place of ending the program; afterwards Ctrl-C does what it did before.
class InterruptSignal
{
public:
    InterruptSignal();
    InterruptSignal(const InterruptSignal&) = delete;
    InterruptSignal& operator=(const InterruptSignal&) = delete;
    ~InterruptSignal();

    /// Whether Ctrl-C was pressed since the last call.
    bool take();

private:
    struct sigaction m_previous;
};
} // namespace truss
