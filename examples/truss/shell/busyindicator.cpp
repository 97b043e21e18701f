// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/busyindicator.h"

#include "truss/shell/consolestatus.h"

#include <kel/tasks.h>

namespace truss
{
BusyIndicator::BusyIndicator(ConsoleStatus& status) : m_status(status)
{
    Tasks::getSingleton()->attach(this);
}

BusyIndicator::~BusyIndicator()
{
    Tasks::getSingleton()->detach(this);
}

void BusyIndicator::tasksChanged(bool busy)
{
    m_status.setBusy(busy);
}

void BusyIndicator::enableMenu(bool)
{
    // A console has no menus.
}
} // namespace truss
