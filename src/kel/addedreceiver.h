// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>

class Bulletin;

/// For receivers that listen to additions to a board.
class KEL_API AddedReceiver
{
public:
    virtual ~AddedReceiver();

    /// The object is on the board.
    virtual void added(Bulletin& board, Bulletin& obj) = 0;

protected:
    AddedReceiver() = default;
    AddedReceiver(const AddedReceiver&) = default;
    AddedReceiver& operator=(const AddedReceiver&) = default;
};
