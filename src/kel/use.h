// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/bulletin.h>
#include <kel/kelapi.h>
#include <kel/usecounter.h>

class BulletinBoard;

/// Counts the uses of a board, or of something on it, in a bulletin that is kept on the board itself. Copying a board
/// never copies its uses.
class KEL_API Use : public Bulletin
{
public:
    /// Has count 0.
    explicit Use(const BulletinKey& key);

    /// The key "Use", under which a board counts its own uses.
    static const BulletinKey& getStaticKey();

    /// Whether the board has a Use under the key whose count is not 0. Creates nothing.
    static bool inUseFor(const BulletinBoard& board, const BulletinKey& key);
    /// The Use under the key, which is created and added when there is none. An entry of another type under the key
    /// fails with the assertion "!hasKey(key)".
    static Use& getFor(BulletinBoard& board, const BulletinKey& key);
    /// @return whether this is the first use.
    static bool incrementFor(BulletinBoard& board, const BulletinKey& key);
    /// @return whether this was the last use. A missing counter is created and, like any count of 0, wraps to the
    /// largest number.
    static bool decrementFor(BulletinBoard& board, const BulletinKey& key);

    const UseCounter& getCounter() const { return m_counter; }

    bool canClone() const override;

private:
    UseCounter m_counter;
};
