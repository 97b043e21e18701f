// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/changednotifier.h>

#include <kel/bulletin.h>
#include <kel/changedreceiver.h>

#include "receivercast_p.h"

const Bulletin& ChangedNotifier::getNothingToSay()
{
    static const Bulletin nothing;
    return nothing;
}

void ChangedNotifier::transmitTo(Receiver& receiver)
{
    if (auto* const listener = receiverCast<ChangedReceiver>(receiver))
        listener->changed(*m_what, *m_how);
}
