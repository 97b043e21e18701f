// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/othertasks.h>

#include <kel/ownedqueue.h>
#include <kel/task.h>

#include <memory>
#include <utility>

OtherTasks::OtherTasks() = default;

OtherTasks::~OtherTasks() = default;

OtherTasks* OtherTasks::getSingleton()
{
    static OtherTasks s_tasks;
    return &s_tasks;
}

void OtherTasks::add(Task* task)
{
    pushBackOwned(m_tasks, std::unique_ptr<Task>(task));
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
    std::unique_ptr<Task> task = popFrontOwned(m_tasks);
    task->execute();
    if (task->repeat())
        pushBackOwned(m_tasks, std::move(task));
}
