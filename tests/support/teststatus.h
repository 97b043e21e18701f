// SPDX-License-Identifier: MIT
// A Status that records what work reports, lets time pass, and presses Stop.
#pragma once

#include <kel/status.h>
#include <kel/timer.h>
#include <kel/ztring.h>

#include <functional>
#include <string>
#include <vector>

/// Records the updates. An update is due only when time has passed, which the test decides: elapse makes the next check
/// due, however fast the machine is.
class TestStatus : public Status
{
public:
    void setStatus(const Ztring& text) override { texts.push_back(text.toUtf8()); }

    void setStatus(const Ztring& text, int percent) override
    {
        texts.push_back(text.toUtf8() + " " + std::to_string(percent));
    }

    unsigned int getPercentComplete() override { return percentComplete; }

    void updateEvents(int percent) override
    {
        updates.push_back(percent);
        if (updates.size() == m_interruptAt)
            setInterrupted();
        if (onUpdate)
            onUpdate(percent);
    }

    /// Lets more than the update interval pass.
    void elapse() { sleep(getUpdateInterval() + 1); }

    /// Presses Stop during the update with this number, the first being 1.
    void interruptAt(std::size_t update) { m_interruptAt = update; }

    /// Keeps an interrupt in force.
    void hold() { m_interruptHeld = true; }

    /// The percentages of the updates made, and the texts of the status line, in order.
    std::vector<int> updates;
    std::vector<std::string> texts;

    /// What nested work gets to hear.
    unsigned int percentComplete = 0;

    /// Called at the end of each update.
    std::function<void(int)> onUpdate;

private:
    std::size_t m_interruptAt = 0;
};
