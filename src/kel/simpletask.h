// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/task.h>

/// A task that calls one member function of an object, once.
///
///     OtherTasks::getSingleton()->add(new SimpleTask<Window>(&window, &Window::refresh));
///
/// The object is not owned and must live until the task has run.
template <class T>
class SimpleTask : public Task
{
public:
    SimpleTask(T* object, void (T::*method)()) : m_object(object), m_method(method) {}

    void performAction() override { (m_object->*m_method)(); }

private:
    T* m_object;
    void (T::*m_method)();
};
