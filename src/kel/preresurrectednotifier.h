// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>
#include <kel/notifier.h>

class Bulletin;

/// Tells a bulletin's observers that it is about to be resurrected. Sent by applications only.
class KEL_API PreResurrectedNotifier : public Notifier
{
public:
    explicit PreResurrectedNotifier(Bulletin& obj) : m_obj(&obj) {}

    /// Calls PreResurrectedReceiver::preResurrected.
    void transmitTo(Receiver& receiver) override;

private:
    Bulletin* m_obj;
};
