// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/batchtask.h>

#include <kel/ownedqueue.h>
#include <kel/status.h>

#include <utility>

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
    return m_current != nullptr || !m_tasks.empty();
}

void BatchTask::performAction()
{
    // A queue asks repeat only after a step, so an empty batch gets one.
    if (!repeat())
        return;
    startNext();
    m_current->execute();
    if (Status::getSingleton().isInterrupted())
        cleanUp();
    else
        settleCurrent();
}

void BatchTask::startNext()
{
    if (m_current != nullptr)
        return;
    m_current = OwnedElement<Task>::takeFront(m_tasks).release();
}

void BatchTask::settleCurrent()
{
    if (!m_current->repeat())
    {
        deleteCurrent();
    }
    else if (m_interleave)
    {
        m_tasks.push_back(m_current);
        m_current = nullptr;
    }
}

void BatchTask::deleteCurrent()
{
    delete std::exchange(m_current, nullptr);
}

void BatchTask::cleanUp()
{
    deleteCurrent();
    deleteOwned(m_tasks);
}
