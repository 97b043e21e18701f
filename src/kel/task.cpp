// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/task.h>

#include <kel/interrupted.h>
#include <kel/log_kel.h>
#include <kel/translator.h>

#include "listenerpass_p.h"

#include <algorithm>

namespace
{
using Listener = Task::ErrorInterruptListener;
using Listeners = Array<Listener*>;

// Made by the first listener's constructor at the latest, and so destroyed after every listener that is static.
Listeners& getListeners()
{
    static Listeners s_listeners;
    return s_listeners;
}

constinit ListenerPass<Listener>* s_running = nullptr;

// Runs one part of a report; a failing part must not keep the others from being made.
template <class Part>
void attempt(Part part) noexcept
{
    try
    {
        part();
    }
    catch (...)
    {
        // There is nobody left to report it to.
    }
}

template <class Tell>
void tellListeners(Tell tell) noexcept
{
    ListenerPass<Listener> pass(getListeners(), s_running);
    while (Listener* listener = pass.next())
        attempt([&] { tell(*listener); });
}

void reportError(const Ztring& message)
{
    Problem problem(message);
    Task::onError(problem);
}

/// Reports the exception that is being handled.
void reportFailure()
{
    try
    {
        throw;
    }
    catch (Interrupted& interrupted)
    {
        Task::onInterrupted(interrupted);
    }
    catch (Problem& problem)
    {
        Task::onError(problem);
    }
    catch (const std::exception& exception)
    {
        reportError(exception.what());
    }
    catch (...)
    {
        reportError(Translator::tr("Unknown Problem"));
    }
}
} // namespace

Task::ErrorInterruptListener::ErrorInterruptListener()
{
    Task::add(*this);
}

Task::ErrorInterruptListener::~ErrorInterruptListener()
{
    // One that was removed already must not take another listener away.
    const Listeners& listeners = getListeners();
    if (std::find(listeners.begin(), listeners.end(), this) != listeners.end())
        Task::remove(*this);
}

void Task::ErrorInterruptListener::onError(Problem&) {}

void Task::ErrorInterruptListener::onInterrupted(Problem&) {}

Task::Task() = default;

Task::~Task() = default;

void Task::execute() noexcept
{
    try
    {
        performAction();
    }
    catch (...)
    {
        attempt(reportFailure);
    }
}

bool Task::repeat()
{
    return false;
}

void Task::onError(Problem& problem)
{
    tellListeners([&](Listener& listener) { listener.onError(problem); });
    attempt([&] { Kel::Log::getSingleton()->append(problem, Message::Error); });
}

void Task::onInterrupted(Problem& problem)
{
    tellListeners([&](Listener& listener) { listener.onInterrupted(problem); });
    attempt(
        [&]
        {
            const Ztring text = Translator::tr("Interrupted: %1");
            text.argReplace(problem.getMessage());
            Kel::Log::getSingleton()->append(text, Message::Info);
        });
}

void Task::add(ErrorInterruptListener& listener)
{
    getListeners().push_back(&listener);
}

void Task::remove(ErrorInterruptListener& listener)
{
    ListenerPass<Listener>::erase(getListeners(), &listener, s_running);
}
