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

    /// The object is whole and is deleted right after all were told. It must not be destroyed from here.
    virtual void deleted(Bulletin& obj) = 0;

protected:
    DeletedReceiver() = default;
    DeletedReceiver(const DeletedReceiver&) = default;
    DeletedReceiver& operator=(const DeletedReceiver&) = default;
};
