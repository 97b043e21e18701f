// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/killedreceiver.h>

KilledReceiver::~KilledReceiver() = default;
