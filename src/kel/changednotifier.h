// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>
#include <kel/notifier.h>

class Bulletin;

/// Tells a bulletin's observers that it changed.
class KEL_API ChangedNotifier : public Notifier
{
public:
    /// With nothing to say about the change: receivers get one and the same empty bulletin each time.
    explicit ChangedNotifier(Bulletin& what) : ChangedNotifier(what, getNothingToSay()) {}
    ChangedNotifier(Bulletin& what, const Bulletin& how) : m_what(&what), m_how(&how) {}

    /// Calls ChangedReceiver::changed.
    void transmitTo(Receiver& receiver) override;

private:
    friend class Observable;

    static const Bulletin& getNothingToSay();

    Bulletin* m_what;
    const Bulletin* m_how;
};
