// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/notifier.h>

void Notifier::transmitTo(Receiver& /*receiver*/) {}
