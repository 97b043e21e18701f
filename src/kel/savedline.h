// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletin.h>
#include <kel/kelapi.h>

#include <iosfwd>
#include <memory>
#include <string>

class Reader;

/// The rest of a record's line, kept on the reader's board under a key of the caller's choice.
///
/// An object that can interpret part of its data only when the others are read saves that part in `read` and reads
/// it in `fixup`:
///
///     void Load::read(Reader& reader) { reader.saveLine(m_lineKey); }
///     bool Load::fixup(Reader& reader)
///     {
///         SavedLine::LineReader line(reader, m_lineKey);
///         reader.read(m_factor);
///         return true;
///     }
class KEL_API SavedLine : public Bulletin
{
public:
    class LineReader;

    SavedLine(const std::string& line, const BulletinKey& key);
    ~SavedLine() override;
    SavedLine(const SavedLine&) = delete;
    SavedLine& operator=(const SavedLine&) = delete;

    const std::string& getLine() const { return m_line; }

private:
    std::string m_line;
};

/// While it lives, the reader takes its input from a saved line.
///
/// The line is taken off the reader's board and is gone. Where the board holds no SavedLine under the key, the
/// reader's input stays as it is. Line readers may be nested and end in the reverse order.
class KEL_API SavedLine::LineReader
{
public:
    LineReader(Reader& reader, const BulletinKey& key);
    /// Gives the reader its previous input back.
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

private:
    std::unique_ptr<std::istream> m_line;
    Reader& m_reader;
    std::istream* m_previous = nullptr;
};
