// SPDX-License-Identifier: MIT
// A task that enters its steps into a journal.
#pragma once

#include <kel/task.h>

#include <functional>
#include <string>
#include <vector>

/// Enters "run" for each step and "delete" at its end, each followed by its name. It wants to run again until it has
/// run `steps` times.
class TestTask : public Task
{
public:
    using Journal = std::vector<std::string>;

    TestTask(Journal& journal, const std::string& name, int steps = 1)
        : m_journal(journal),
          m_name(name),
          m_stepsLeft(steps)
    {
    }
    ~TestTask() override { m_journal.push_back("delete " + m_name); }

    void performAction() override
    {
        m_journal.push_back("run " + m_name);
        --m_stepsLeft;
        call(onAction);
    }

    bool repeat() override
    {
        call(onRepeat);
        return m_stepsLeft > 0;
    }

    /// Keeps the sounds of a run away.
    TestTask* beQuiet()
    {
        m_quiet = true;
        return this;
    }

    /// Called at the end of each step, and each time the task is asked whether it wants to run again.
    std::function<void()> onAction;
    std::function<void()> onRepeat;

private:
    // Through a copy, which survives an action that replaces itself.
    static void call(const std::function<void()>& action)
    {
        const std::function<void()> copy = action;
        if (copy)
            copy();
    }

    Journal& m_journal;
    std::string m_name;
    int m_stepsLeft;
};
