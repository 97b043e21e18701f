// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/deletedreceiver.h>

DeletedReceiver::~DeletedReceiver() = default;
