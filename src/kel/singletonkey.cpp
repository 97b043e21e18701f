// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/singletonkey.h>

SingletonKey::SingletonKey() : m_key(new BulletinKey) {}

SingletonKey::~SingletonKey() = default;
