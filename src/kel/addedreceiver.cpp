// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/addedreceiver.h>

AddedReceiver::~AddedReceiver() = default;
