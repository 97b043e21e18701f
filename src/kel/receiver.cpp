// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/receiver.h>

#include <kel/bulletin.h>
#include <kel/notifier.h>
#include <kel/observable.h>

#include "receivercast_p.h"

Receiver::~Receiver()
{
    ReceiverCastCache::forgetAll();
}

void Receiver::update(Notifier& notifier)
{
    notifier.transmitTo(*this);
}

void Receiver::observe(Bulletin& bulletin)
{
    bulletin.getObservable().attach(*this);
}

void Receiver::unobserve(Bulletin& bulletin)
{
    bulletin.getObservable().detach(*this);
}
