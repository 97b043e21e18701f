// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/removednotifier.h>

#include <kel/removedreceiver.h>

#include "receivercast_p.h"

void RemovedNotifier::transmitTo(Receiver& receiver)
{
    if (auto* const listener = receiverCast<RemovedReceiver>(receiver))
        listener->removed(*m_board, *m_obj);
}
