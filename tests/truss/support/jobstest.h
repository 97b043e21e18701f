// SPDX-License-Identifier: MIT
// What the tests of the example application's jobs have in common.
#pragma once

#include <support/installed.h>
#include <truss/support/trusstest.h>

#include "truss/jobs/failurecounter.h"
#include "truss/jobs/jobqueue.h"

#include <kel/othertasks.h>
#include <kel/sound.h>
#include <kel/tasks.h>

#include <gmock/gmock.h>

/// Records the sounds.
class TestSound : public Sound
{
public:
    void play(Event event, bool) override { played.push_back(event); }

    std::vector<Event> played;
};

/// Runs jobs through the queues of the library.
class JobsTest : public TrussTest
{
protected:
    Kel::File file(const std::string& name) { return Kel::File(directory / name); }

    void run()
    {
        jobs.start();
        while (!jobs.isFinished())
        {
            Tasks::getSingleton()->onIdle();
            OtherTasks::getSingleton()->onIdle();
        }
    }

    template <class Job, class... Arguments>
    void add(Arguments&&... arguments)
    {
        jobs.add(std::make_unique<Job>(document, std::forward<Arguments>(arguments)...));
    }

    /// Presses Stop at the next update.
    void interruptSoon()
    {
        status.elapse();
        status.interruptAt(status.updates.size() + 1);
    }

    std::vector<std::string> errors() const
    {
        std::vector<std::string> texts;
        for (const auto& [type, text] : log->messages)
        {
            if (type == Message::Error)
                texts.push_back(text);
        }
        return texts;
    }

    bool wasInterrupted(const std::string& title) const
    {
        return testing::Value(log->messages, testing::Contains(std::make_pair(Message::Info, "Interrupted: " + title)));
    }

    /// A chain of many bars, so that work on it takes several steps.
    void importChain(unsigned bars)
    {
        std::ostringstream csv;
        csv << "node,n0,0,0,0\nsupport,n0,1,1,1\n";
        for (unsigned i = 1; i <= bars; ++i)
            csv << "node,n" << i << ',' << i << ",0,0\nsupport,n" << i << ",0,1,1\nbar,b" << i << ",n" << i - 1 << ",n"
                << i << ",1,1e7\n";
        csv << "load,n" << bars << ",1,0,0\n";
        import(csv.str());
    }

    Installed<TestSound> sound;
    truss::FailureCounter failures;
    truss::JobQueue jobs{failures};
};
