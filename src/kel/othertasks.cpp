// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/othertasks.h>

#include <kel/task.h>

OtherTasks::OtherTasks() = default;

OtherTasks::~OtherTasks() = default;

OtherTasks* OtherTasks::getSingleton()
{
    static OtherTasks s_tasks;
    return &s_tasks;
}

void OtherTasks::add(Task* task)
{
    OwnedElement<Task>(task).putBack(m_tasks);
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
    OwnedElement<Task> task = OwnedElement<Task>::takeFront(m_tasks);
    task->execute();
    if (task->repeat())
        task.putBack(m_tasks);
}
