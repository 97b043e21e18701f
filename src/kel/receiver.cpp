// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/receiver.h>

#include <kel/bulletin.h>
#include <kel/notifier.h>
#include <kel/observable.h>

#include <cstring>

#include "receivercast_p.h"

namespace
{
/// The first operation of its class that is not the destructor, which takes two places in the virtual table (Itanium
/// C++ ABI, "Virtual Table Layout"): update.
const void* getUpdate(const Observer& observer)
{
    const void* const* table;
    std::memcpy(&table, static_cast<const void*>(&observer), sizeof table);
    return table[2];
}
} // namespace

bool ReceiverCastCache::isPlainReceiver(const Observer& observer)
{
    static const void* const s_update = getUpdate(Receiver());
    return getUpdate(observer) == s_update;
}

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
