// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include "truss/platform/interruptsignal.h"
#include "truss/shell/progressline.h"

#include <kel/status.h>
#include <kel/ztring.h>

namespace truss
{
/// Draws the progress of work at the foot of the terminal and lets Ctrl-C interrupt it.
class ConsoleStatus : public Status
{
public:
    /// @name Called by the library and by jobs while work is going on
    /// @{

    /// What is going on; shows at the next update.
    void setStatus(const Ztring& text) override;
    /// The same with how far the job has come. Work inside the job maps its own progress into the rest.
    void setStatus(const Ztring& text, int percent) override;
    unsigned int getPercentComplete() override { return m_percent; }
    /// The throttled update: draws, and looks whether Ctrl-C was pressed.
    void updateEvents(int percent) override;

    /// @}

    /// Whether a run of work is in progress; at its end the progress line goes.
    void setBusy(bool busy);
    /// Called by a timer; shows that the program is alive.
    void turnWheel();
    /// Takes the progress line off the terminal until the next update.
    void clearLine() { m_line.clear(); }

private:
    void draw(int percent);

    InterruptSignal m_signal;
    ProgressLine m_line;
    Ztring m_text;
    unsigned m_percent = 0;
    int m_drawnPercent = -1;
    bool m_busy = false;
};
} // namespace truss
