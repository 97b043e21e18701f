// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletinboard.h>
#include <kel/kelapi.h>

class Reader;
class Writer;

/// A table of component versions: that of the process (the singleton), or that of a stream on its reader's board.
///
/// Every stream records the versions of what wrote it, and a run refuses a stream that is newer in any component
/// that it knows. Applications and modules add their versions with Version::create.
class KEL_API Versions : public BulletinBoard
{
public:
    /// An empty table under the key "Versions".
    Versions();
    ~Versions() override;
    Versions(const Versions&) = delete;
    Versions& operator=(const Versions&) = delete;

    /// The key "Versions".
    static const BulletinKey& getStaticKey();

    /// The table of this process. It holds at least the application's and the library's own version.
    static Versions& getSingleton();

    /// Writes the number of versions, then each, in key order.
    void write(Writer& writer);

    /// Reads a stream's table into this one.
    ///
    /// A stream from before the library recorded its own version is given one, see addKelVersion.
    /// @throws Problem "File written by newer version.  Update to latest version using Help->Check for Updates"
    ///     when a component of this process is older than in the stream
    void read(Reader& reader);

    /// Adds the application's version once more as the library's; 0.0.0 where the table lacks it. A table that has a
    /// library version fails with the assertion "!hasKey(kelVersionKey)".
    void addKelVersion();

    /// Whether there are versions besides the application's.
    bool hasModules() const;
};
