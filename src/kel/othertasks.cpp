// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/othertasks.h>

#include <kel/task.h>

#include <memory>

OtherTasks::OtherTasks() = default;

OtherTasks::~OtherTasks() = default;

OtherTasks* OtherTasks::getSingleton()
{
    static OtherTasks s_tasks;
    return &s_tasks;
}

void OtherTasks::add(Task* task)
{
    std::unique_ptr<Task> owned(task);
    m_tasks.push_back(task);
    owned.release();
}

bool OtherTasks::onIdle()
{
    if (m_tasks.empty())
        return false;
    processTask();
    return !m_tasks.empty();
}

void OtherTasks::processTask()
{
    std::unique_ptr<Task> task(m_tasks.front());
    m_tasks.pop_front();
    task->execute();
    if (!task->repeat())
        return;
    m_tasks.push_back(task.get());
    task.release();
}
