// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/deletednotifier.h>

#include <kel/deletedreceiver.h>

#include "receivercast_p.h"

void DeletedNotifier::transmitTo(Receiver& receiver)
{
    if (auto* const listener = receiverCast<DeletedReceiver>(receiver))
        listener->deleted(*m_obj);
}
