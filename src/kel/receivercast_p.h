// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/receiver.h>

/// The receiver as one that listens to a kind of message, or null when its class does not implement that interface.
template <class ReceiverInterface>
ReceiverInterface* receiverCast(Receiver& receiver)
{
    return dynamic_cast<ReceiverInterface*>(&receiver);
}
