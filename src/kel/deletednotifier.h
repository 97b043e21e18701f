// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>
#include <kel/notifier.h>

class Bulletin;

/// Tells a bulletin's observers that it is about to be deleted.
class KEL_API DeletedNotifier : public Notifier
{
public:
    explicit DeletedNotifier(Bulletin& obj) : m_obj(&obj) {}

    /// Calls DeletedReceiver::deleted.
    void transmitTo(Receiver& receiver) override;

private:
    Bulletin* m_obj;
};
