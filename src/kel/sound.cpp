// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/sound.h>

#include <kel/dynamicfactory.h>

Sound::Sound() : Bulletin(getStaticKey()) {}

Sound::~Sound() = default;

const BulletinKey& Sound::getStaticKey()
{
    static const BulletinKey s_key("Sound");
    return s_key;
}

Sound* Sound::getSingleton()
{
    return &DynamicFactory::getSingleton().getOrCreate<Sound>();
}

void Sound::play(Event, bool) {}

void Sound::setOn(bool) {}
