// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>

class Receiver;

/// A message that names what happened and to which bulletins. The sender builds it on the stack and passes it to
/// Bulletin::notifyObservers; receivers must not keep it.
///
///     KilledNotifier notifier(*obj);
///     obj->notifyObservers(notifier);
class KEL_API Notifier
{
public:
    Notifier() = default;
    Notifier(const Notifier&) = default;
    Notifier& operator=(const Notifier&) = default;
    virtual ~Notifier() = default;

    /// Hands the message to a receiver that listens to this kind of message; others ignore it. The base does nothing.
    virtual void transmitTo(Receiver& receiver);
};
