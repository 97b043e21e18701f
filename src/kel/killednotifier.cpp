// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/killednotifier.h>

#include <kel/killedreceiver.h>

#include "receivercast_p.h"

void KilledNotifier::transmitTo(Receiver& receiver)
{
    if (auto* const listener = receiverCast<KilledReceiver>(receiver))
        listener->killed(*m_obj);
}
