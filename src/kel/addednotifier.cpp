// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/addednotifier.h>

#include <kel/addedreceiver.h>

#include "receivercast_p.h"

void AddedNotifier::transmitTo(Receiver& receiver)
{
    if (auto* const listener = receiverCast<AddedReceiver>(receiver))
        listener->added(*m_board, *m_obj);
}
