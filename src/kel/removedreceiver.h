// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>

class Bulletin;
class BulletinBoard;

/// For receivers that listen to removals from a board.
class KEL_API RemovedReceiver
{
public:
    virtual ~RemovedReceiver();

    /// The object is off the board and not deleted; it belongs to whoever removed it, and is not destroyed from here
    /// by one who merely hears of it.
    virtual void removed(BulletinBoard& board, Bulletin& obj) = 0;

protected:
    RemovedReceiver() = default;
    RemovedReceiver(const RemovedReceiver&) = default;
    RemovedReceiver& operator=(const RemovedReceiver&) = default;
};
