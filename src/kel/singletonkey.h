// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/bulletinkey.h>
#include <kel/kelapi.h>

#include <memory>

/// Holds a fresh anonymous key, one that no other object has.
class KEL_API SingletonKey
{
public:
    SingletonKey();
    SingletonKey(const SingletonKey&) = delete;
    SingletonKey& operator=(const SingletonKey&) = delete;
    virtual ~SingletonKey();

    const BulletinKey& getKey() const { return *m_key; }

private:
    const std::unique_ptr<BulletinKey> m_key;
};
