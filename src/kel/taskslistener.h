// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/kelapi.h>

/// Hears of the main task queue; implemented by menus and busy indicators, and attached with Tasks::attach.
class KEL_API TasksListener
{
public:
    TasksListener() = default;
    virtual ~TasksListener() = default;

    TasksListener(const TasksListener&) = default;
    TasksListener& operator=(const TasksListener&) = default;

    /// Called on attach, at the start of a run before its first step, and some time after its end: whether a run of
    /// tasks is in progress.
    virtual void tasksChanged(bool busy) = 0;

    /// Called by Tasks::enableMenu while no run is in progress: asks to enable or disable the menus.
    virtual void enableMenu(bool enable) = 0;
};
