// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>
#include <kel/notifier.h>

class Bulletin;

/// Tells a bulletin's observers that it was resurrected. Sent by applications only.
class KEL_API ResurrectedNotifier : public Notifier
{
public:
    explicit ResurrectedNotifier(Bulletin& obj) : m_obj(&obj) {}

    /// Calls ResurrectedReceiver::resurrected.
    void transmitTo(Receiver& receiver) override;

private:
    Bulletin* m_obj;
};
