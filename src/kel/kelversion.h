// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/kelapi.h>

class BulletinKey;
class Reader;
class Version;

/// The library's own version: of this process, and of the process that wrote a stream.
class KEL_API KelVersion
{
public:
    KelVersion() = delete;

    /// The key "KelVersion".
    static const BulletinKey& getStaticKey();

    /// The version of this process. Before static initialisation has set it, the assertion "valid(s_currentVersion)"
    /// fails.
    static Version* getCurrent();

    /// The version recorded in the reader's stream; 0.0.0 where there is none, never null.
    static Version* getFrom(Reader& reader);

    /// Called by a module with the library version that it was built with. Returns false when that is the current one.
    ///
    /// @throws Problem "Incompatible old version.  Update to latest version using Help->Check for Updates" for any
    ///     other, older or newer
    static bool checkCompiledVersion(const Version& compiled);

    /// Owned by Versions::getSingleton().
    static Version* s_currentVersion;
};
