// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>
#include <kel/notifier.h>

class Bulletin;
class BulletinBoard;

/// Tells a board's observers that a bulletin was removed.
class KEL_API RemovedNotifier : public Notifier
{
public:
    RemovedNotifier(BulletinBoard& board, Bulletin& obj) : m_board(&board), m_obj(&obj) {}

    /// Calls RemovedReceiver::removed.
    void transmitTo(Receiver& receiver) override;

private:
    BulletinBoard* m_board;
    Bulletin* m_obj;
};
