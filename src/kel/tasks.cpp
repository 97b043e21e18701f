// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/tasks.h>

#include <kel/othertasks.h>
#include <kel/simpletask.h>
#include <kel/sound.h>
#include <kel/status.h>
#include <kel/taskslistener.h>

#include "flagguard_p.h"
#include "listenerpass_p.h"

#include <new>
#include <utility>

namespace
{
constinit ListenerPass<TasksListener>* s_running = nullptr;

template <class Tell>
void tellListeners(const Array<TasksListener*>& listeners, Tell tell)
{
    ListenerPass<TasksListener> pass(listeners, s_running);
    while (TasksListener* listener = pass.next())
        tell(*listener);
}

// Does what has to follow an action also where the action throws.
template <class Action, class Sequel>
void doBoth(Action action, Sequel sequel)
{
    try
    {
        action();
    }
    catch (...)
    {
        sequel();
        throw;
    }
    sequel();
}

void playUnlessQuiet(Sound::Event event, bool quiet)
{
    if (!quiet)
        Sound::getSingleton()->play(event, false);
}
} // namespace

Tasks::Tasks() = default;

Tasks::~Tasks() = default;

Tasks* Tasks::getSingleton()
{
    static Tasks s_tasks;
    return &s_tasks;
}

void Tasks::attach(TasksListener* listener)
{
    m_listeners.push_back(listener);
    listener->tasksChanged(m_busy);
}

void Tasks::detach(TasksListener* listener)
{
    ListenerPass<TasksListener>::erase(m_listeners, listener, s_running);
}

void Tasks::notifyChanged()
{
    tellListeners(m_listeners, [this](TasksListener& listener) { listener.tasksChanged(m_busy); });
}

void Tasks::notifyChangedLater()
{
    OtherTasks::getSingleton()->add(new SimpleTask<Tasks>(this, &Tasks::notifyChanged));
}

void Tasks::enableMenu(bool enable)
{
    if (!m_busy)
        tellListeners(m_listeners, [enable](TasksListener& listener) { listener.enableMenu(enable); });
}

void Tasks::add(Task* task)
{
    OwnedElement<Task>(task).putBack(m_tasks);
}

void Tasks::addImmediate(Task* task)
{
    add(task);
    if (m_processing)
        return;
    while (!m_tasks.empty())
        processGuarded();
}

bool Tasks::onIdle()
{
    if (m_processing || m_tasks.empty())
        return false;
    processGuarded();
    return !m_tasks.empty();
}

void Tasks::processGuarded()
{
    const FlagGuard processing(m_processing);
    processTask();
}

void Tasks::processTask()
{
    OwnedElement<Task> task = OwnedElement<Task>::takeFront(m_tasks);
    const bool quiet = task->isQuiet();
    if (!m_busy)
        beginRun(task);
    task->execute();
    doBoth([&] { requeueOrDelete(std::move(task)); },
           [&]
           {
               if (m_tasks.empty())
                   endRun(quiet);
           });
}

// A task that could not start because the start of its run failed goes back to its place.
void Tasks::beginRun(OwnedElement<Task>& task)
{
    m_busy = true;
    try
    {
        playUnlessQuiet(Sound::WorkStarted, task->isQuiet());
        notifyChanged();
    }
    catch (...)
    {
        task.putFront(m_tasks);
        throw;
    }
}

void Tasks::requeueOrDelete(OwnedElement<Task> task)
{
    if (task->repeat())
        task.putBack(m_tasks);
}

void Tasks::endRun(bool quiet)
{
    m_busy = false;
    doBoth([quiet] { playUnlessQuiet(Sound::WorkFinished, quiet); },
           [this] { doBoth([] { Status::getSingleton().resetInterrupt(); }, [this] { notifyEnd(); }); });
}

// Better now than never, where there is no memory to do it later.
void Tasks::notifyEnd()
{
    try
    {
        notifyChangedLater();
    }
    catch (const std::bad_alloc&)
    {
        notifyChanged();
    }
}
