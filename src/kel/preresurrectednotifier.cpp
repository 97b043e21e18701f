// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/preresurrectednotifier.h>

#include <kel/preresurrectedreceiver.h>

#include "receivercast_p.h"

void PreResurrectedNotifier::transmitTo(Receiver& receiver)
{
    if (auto* const listener = receiverCast<PreResurrectedReceiver>(receiver))
        listener->preResurrected(*m_obj);
}
