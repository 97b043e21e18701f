// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>

class Bulletin;

/// For receivers that listen to changes of a bulletin.
class KEL_API ChangedReceiver
{
public:
    virtual ~ChangedReceiver();

    /// The change is done. `how` describes it; where the sender has nothing to say, it is a shared empty bulletin.
    virtual void changed(Bulletin& what, const Bulletin& how) = 0;

protected:
    ChangedReceiver() = default;
    ChangedReceiver(const ChangedReceiver&) = default;
    ChangedReceiver& operator=(const ChangedReceiver&) = default;
};
