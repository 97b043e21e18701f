// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/resurrectednotifier.h>

#include <kel/resurrectedreceiver.h>

#include "receivercast_p.h"

void ResurrectedNotifier::transmitTo(Receiver& receiver)
{
    if (auto* const listener = receiverCast<ResurrectedReceiver>(receiver))
        listener->resurrected(*m_obj);
}
