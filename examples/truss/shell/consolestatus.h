// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include "truss/shell/interruptsignal.h"
#include "truss/shell/progressline.h"

#include <kel/status.h>
#include <kel/ztring.h>

namespace truss
{
/// Draws the progress of work at the foot of the terminal and lets Ctrl-C interrupt it.
class ConsoleStatus : public Status
{
public:
    void setStatus(const Ztring& text) override;
    void setStatus(const Ztring& text, int percent) override;
    /// Called by the library every now and then while work is going on.
    void updateEvents(int percent) override;
    void sleep(unsigned int ms) override;

    /// Takes the progress line off the terminal until the next update.
    void clearLine() { m_line.clear(); }

private:
    InterruptSignal m_signal;
    ProgressLine m_line;
    Ztring m_text;
};
} // namespace truss
