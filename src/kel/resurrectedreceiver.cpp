// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/resurrectedreceiver.h>

ResurrectedReceiver::~ResurrectedReceiver() = default;
