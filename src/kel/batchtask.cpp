// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/batchtask.h>

#include <kel/status.h>

BatchTask::BatchTask(bool interleave) : m_interleave(interleave) {}

BatchTask::~BatchTask()
{
    cleanUp();
}

void BatchTask::add(Task* task)
{
    OwnedElement<Task>(task).putBack(m_tasks);
}

bool BatchTask::repeat()
{
    return !m_tasks.empty();
}

void BatchTask::performAction()
{
    // A queue asks repeat only after a step, so an empty batch gets one.
    if (m_tasks.empty())
        return;
    Task& current = *m_tasks.front();
    current.execute();
    if (isInterrupted())
        cleanUp();
    else if (!current.repeat())
        OwnedElement<Task>::takeFront(m_tasks).reset();
    else if (m_interleave)
        OwnedElement<Task>::takeFront(m_tasks).putBack(m_tasks);
}

// Without a Status the batch could not be stopped: it ends with the assertion.
bool BatchTask::isInterrupted()
{
    try
    {
        return Status::getSingleton().isInterrupted();
    }
    catch (...)
    {
        cleanUp();
        throw;
    }
}

void BatchTask::cleanUp()
{
    deleteOwned(m_tasks);
}
