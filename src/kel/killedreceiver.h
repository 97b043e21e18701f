// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>

class Bulletin;

/// For receivers that listen to the killing of a bulletin, whose meaning is the application's.
class KEL_API KilledReceiver
{
public:
    virtual ~KilledReceiver();

    /// The object was killed, whatever that means to the sender.
    virtual void killed(Bulletin& obj) = 0;

protected:
    KilledReceiver() = default;
    KilledReceiver(const KilledReceiver&) = default;
    KilledReceiver& operator=(const KilledReceiver&) = default;
};
