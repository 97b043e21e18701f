// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/kelapi.h>

#include <fstream>
#include <memory>

class Reader;

namespace Kel
{
class File;
}

/// Opens a saved file for reading.
///
///     FileReader file;
///     auto* const model = dynamic_cast<Model*>(file.open(Kel::File("model.x"), true)->perform());
///     documents.add(model); // a board, which owns it from then on
class KEL_API FileReader
{
public:
    FileReader();
    ~FileReader();
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    /// Opens the file and reads its header, which must name the product (Branding::getProduct, which the
    /// application sets at its start), and its version table.
    ///
    /// The reader returned is owned by this object and lives as long. After a failure this object is as new. A
    /// second call fails with the assertion "!valid(m_in)".
    ///
    /// @throws Problem "Failed to open file: '%1'", and what Reader's construction throws
    Reader* open(const Kel::File& file, bool showStatus);

private:
    std::unique_ptr<std::ifstream> m_in;
    std::unique_ptr<Reader> m_reader;
};
