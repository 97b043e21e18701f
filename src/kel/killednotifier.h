// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>
#include <kel/notifier.h>

class Bulletin;

/// Tells a bulletin's observers that it was killed. Sent by applications only.
class KEL_API KilledNotifier : public Notifier
{
public:
    explicit KilledNotifier(Bulletin& obj) : m_obj(&obj) {}

    /// Calls KilledReceiver::killed.
    void transmitTo(Receiver& receiver) override;

private:
    Bulletin* m_obj;
};
