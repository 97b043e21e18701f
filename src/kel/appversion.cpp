// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/appversion.h>

#include <kel/bulletinkey.h>
#include <kel/version.h>
#include <kel/zassert.h>

Version* AppVersion::s_currentVersion = Version::create(5, 0, 0, AppVersion::getStaticKey());

const BulletinKey& AppVersion::getStaticKey()
{
    static const BulletinKey s_key("AppVersion");
    return s_key;
}

Version* AppVersion::getCurrent()
{
    KEL_ASSERT(s_currentVersion, "valid(s_currentVersion)");
    return s_currentVersion;
}

Version* AppVersion::getFrom(Reader& reader)
{
    return Version::getFrom(reader, getStaticKey());
}
