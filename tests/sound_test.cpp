// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/sound.h>

#include "support/installed.h"
#include "support/problem.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{
class LoudSound : public Sound
{
public:
    void play(Event event, bool) override { last = event; }

    Event last = Event(0);
};
} // namespace

TEST(Sound, IsMadeOnceAndSilentWhereTheApplicationHasNone)
{
    DynamicFactory& factory = DynamicFactory::getSingleton();
    Sound* const sound = Sound::getSingleton();
    EXPECT_EQ(Sound::getSingleton(), sound);
    EXPECT_EQ(factory.getPtr(Sound::getStaticKey()), sound);
    sound->play(Sound::WorkStarted, false);
    sound->setOn(true);
    Bulletin::destroy(factory.removeByKey(Sound::getStaticKey()), false);
}

TEST(Sound, ApplicationInstallsItsOwnWithEventsOfItsOwn)
{
    const Installed<LoudSound> sound;
    Sound::getSingleton()->play(static_cast<Sound::Event>(3), true);
    EXPECT_EQ(sound->last, 3u);
}

TEST(Sound, EventsHaveTheirNumbers)
{
    EXPECT_EQ(Sound::WorkStarted, 4u);
    EXPECT_EQ(Sound::WorkFinished, 5u);
}

TEST(Sound, CarriesItsKey)
{
    EXPECT_EQ(Sound().getKey(), Sound::getStaticKey());
    EXPECT_EQ(Sound::getStaticKey().getName(), "Sound");
}

TEST(Sound, ObjectOfAnotherTypeUnderTheKeyFails)
{
    DynamicFactory& factory = DynamicFactory::getSingleton();
    Bulletin impostor(Sound::getStaticKey());
    factory.add(&impostor);
    EXPECT_ASSERTION(Sound::getSingleton(), "!hasKey(key)");
    factory.remove(impostor);
}
