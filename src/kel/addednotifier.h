// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>
#include <kel/notifier.h>

class Bulletin;

/// Tells a board's observers that a bulletin was added.
class KEL_API AddedNotifier : public Notifier
{
public:
    AddedNotifier(Bulletin& board, Bulletin& obj) : m_board(&board), m_obj(&obj) {}

    /// Calls AddedReceiver::added.
    void transmitTo(Receiver& receiver) override;

private:
    Bulletin* m_board;
    Bulletin* m_obj;
};
