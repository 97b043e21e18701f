// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/kelapi.h>

class BulletinKey;
class Reader;
class Version;

/// The application's version: of this process, and of the process that wrote a stream.
///
/// It is 5.0.0 until the application assigns its own, at its start, before anything is saved or opened:
///
///     *AppVersion::getCurrent() = Version(1, 0, 0, AppVersion::getStaticKey());
class KEL_API AppVersion
{
public:
    AppVersion() = delete;

    /// The key "AppVersion".
    static const BulletinKey& getStaticKey();

    /// The version of this process. Before static initialisation has set it, the assertion "valid(s_currentVersion)"
    /// fails.
    static Version* getCurrent();

    /// The version recorded in the reader's stream; 0.0.0 where there is none, never null.
    static Version* getFrom(Reader& reader);

    /// Owned by Versions::getSingleton().
    static Version* s_currentVersion;
};
