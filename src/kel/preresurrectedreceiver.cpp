// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/preresurrectedreceiver.h>

PreResurrectedReceiver::~PreResurrectedReceiver() = default;
