// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/kelapi.h>

#include <fstream>
#include <memory>
#include <string>

class Writer;

namespace Kel
{
class File;
}

/// Saves a file safely: everything is written to a temporary file beside the target, which replaces the target only
/// when it is complete.
///
///     const Kel::File target("model.x");
///     FileWriter file;
///     Writer* const writer = file.open(target, true); // writes model.x.tmp
///     writer->getOut().precision(17);                 // else doubles keep six digits
///     writer->writeObj(&root);
///     if (!writer->getOut().flush())                  // a full disk; without this test close() deletes the old file
///         target.throwWritingCorrupt();
///     file.close();                                   // replaces model.x
///
/// If anything throws before `close`, the destructor deletes the temporary file and the old target stays as it was.
/// Files are deleted and moved by the application's Platform, which must be installed. The state of the output stream
/// is not tested: a full disk goes unnoticed unless the caller looks at it, as above. docs/saving.md shows what else an
/// application adds to lose nothing. A target must not be saved again inside its own save (by an event that
/// Status::updateEvents processes): both would write the one temporary file.
class KEL_API FileWriter
{
public:
    FileWriter();
    /// Deletes the temporary file unless `close` came to replacing the target. Takes no memory but what the C library
    /// takes to open that file and the platform to delete it; what the platform throws is dropped.
    ~FileWriter();
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    /// Opens the temporary file (the target's path with ".tmp" appended) and writes the header, with the names of
    /// Branding, which the application sets at its start, and the version table.
    ///
    /// The writer returned is owned by this object and lives until `close`. After a failure this object is as new and
    /// the temporary file is gone. A second call, without a successful `close` between, fails with the assertion
    /// "!valid(m_file)".
    ///
    /// @throws Problem "Failed to open file: '%1'", %1 naming the temporary file
    Writer* open(const Kel::File& target, bool showStatus);

    /// Completes the temporary file, deletes the old target, if any, and moves the temporary file into its place.
    ///
    /// A temporary file that is gone meanwhile throws "Failed to open file: '%1'", and the old target stays. What the
    /// platform throws passes through; the temporary file is complete then and stays on disk. After either, `close` may
    /// be called again. Without a file opened it fails with the assertion "valid(m_file)".
    void close();

private:
    std::unique_ptr<Kel::File> m_file;
    // Kept, so that the destructor takes no memory.
    std::unique_ptr<Kel::File> m_temporary;
    std::string m_temporaryPath;
    std::unique_ptr<std::ofstream> m_out;
    std::unique_ptr<Writer> m_writer;
    bool m_isClosing = false;
};
