// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/changedreceiver.h>

ChangedReceiver::~ChangedReceiver() = default;
