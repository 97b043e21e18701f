// SPDX-License-Identifier: MIT
// libkel: Application services
#pragma once

#include <kel/bulletin.h>

#include <cstdint>

/// Audible events; silent in the library.
///
/// An application that wants to be heard derives from Sound and puts its instance on the DynamicFactory board before
/// the first sound.
class KEL_API Sound : public Bulletin
{
public:
    /// The occasions for a sound. Values 0 to 3 are the application's.
    enum Event : std::uint32_t
    {
        WorkStarted = 4, ///< a run of queued tasks begins
        WorkFinished = 5 ///< the task queue has become empty
    };

    /// Carries the key of getStaticKey.
    Sound();
    ~Sound() override;

    Sound(const Sound&) = delete;
    Sound& operator=(const Sound&) = delete;

    /// The key "Sound".
    static const BulletinKey& getStaticKey();

    /// The sound on the DynamicFactory board, which owns it. Makes a silent one there when it has none; an object of
    /// another type under the key fails the board's assertion "!hasKey(key)".
    static Sound* getSingleton();

    /// Called at the start and at the end of a run of queued tasks (with false), unless the task on that edge is
    /// quiet. The base does nothing.
    virtual void play(Event event, bool flag);

    /// Called by the application to switch sounds on or off. The base does nothing.
    virtual void setOn(bool on);
};
