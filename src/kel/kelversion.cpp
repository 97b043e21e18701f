// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/kelversion.h>

#include <kel/bulletinkey.h>
#include <kel/problem.h>
#include <kel/translator.h>
#include <kel/version.h>
#include <kel/zassert.h>

Version* KelVersion::s_currentVersion = Version::create(5, 1, 3, KelVersion::getStaticKey());

const BulletinKey& KelVersion::getStaticKey()
{
    static const BulletinKey s_key("KelVersion");
    return s_key;
}

Version* KelVersion::getCurrent()
{
    KEL_ASSERT(s_currentVersion, "valid(s_currentVersion)");
    return s_currentVersion;
}

Version* KelVersion::getFrom(Reader& reader)
{
    return Version::getFrom(reader, getStaticKey());
}

bool KelVersion::checkCompiledVersion(const Version& compiled)
{
    KEL_ASSERT(s_currentVersion, "valid(s_currentVersion)");
    if (compiled != *s_currentVersion)
        Problem::throwProblem(Translator::tr("Incompatible old version.  Update to latest version using "
                                             "Help->Check for Updates"));
    return false;
}
