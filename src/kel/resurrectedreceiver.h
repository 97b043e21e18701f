// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>

class Bulletin;

/// For receivers that listen to the resurrection of a bulletin, whose meaning is the application's.
class KEL_API ResurrectedReceiver
{
public:
    virtual ~ResurrectedReceiver();

    /// The object was resurrected.
    virtual void resurrected(Bulletin& obj) = 0;

protected:
    ResurrectedReceiver() = default;
    ResurrectedReceiver(const ResurrectedReceiver&) = default;
    ResurrectedReceiver& operator=(const ResurrectedReceiver&) = default;
};
