// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletinboard.h>

#include <memory>

/// Adds a new bulletin to a board. If that throws before the board holds it, it is deleted.
template <class T>
T& addOwned(BulletinBoard& board, std::unique_ptr<T> bulletin)
{
    T* const added = bulletin.get();
    const BulletinKey key(added->getKey());
    try
    {
        board.add(added);
    }
    catch (...)
    {
        if (board.getPtr(key) == added)
            static_cast<void>(bulletin.release());
        throw;
    }
    static_cast<void>(bulletin.release());
    return *added;
}
