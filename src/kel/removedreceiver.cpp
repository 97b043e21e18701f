// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/removedreceiver.h>

RemovedReceiver::~RemovedReceiver() = default;
