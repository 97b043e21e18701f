// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>

class Bulletin;

/// For receivers that listen to the deletion of a bulletin.
class KEL_API DeletedReceiver
{
public:
    virtual ~DeletedReceiver();

    /// The object is whole and is deleted right after all were told. A receiver may do that itself, with
    /// Bulletin::destroy: the others are not told then, and the deletion that was asked for is done.
    virtual void deleted(Bulletin& obj) = 0;

protected:
    DeletedReceiver() = default;
    DeletedReceiver(const DeletedReceiver&) = default;
    DeletedReceiver& operator=(const DeletedReceiver&) = default;
};
