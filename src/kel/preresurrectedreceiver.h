// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>

class Bulletin;

/// For receivers that listen to the coming resurrection of a bulletin, whose meaning is the application's.
class KEL_API PreResurrectedReceiver
{
public:
    virtual ~PreResurrectedReceiver();

    /// The object is about to be resurrected.
    virtual void preResurrected(Bulletin& obj) = 0;

protected:
    PreResurrectedReceiver() = default;
    PreResurrectedReceiver(const PreResurrectedReceiver&) = default;
    PreResurrectedReceiver& operator=(const PreResurrectedReceiver&) = default;
};
