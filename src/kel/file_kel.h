// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/kelapi.h>
#include <kel/ztring.h>

#include <cstddef>
#include <cstdio>
#include <iosfwd>

class Problem;

namespace Kel
{
/// A file name: operations on its parts, the standard ways to open the file, and the messages for failures.
///
/// Both "/" and "\" separate directories, and an extension is what follows the last "." of the whole path, be it in a
/// directory's name. Only the opening operations and appendTo() touch the disk. They pass the path in UTF-8, whatever
/// the locale, so that one path is one file (and one with a zero byte none), and fail with the Problem of
/// throwOpenFailed().
class KEL_API File
{
public:
    File(const Ztring& path);
    File(const File& other) = default;
    File& operator=(const File& other) = default;
    File& operator=(const Ztring& path);

    const Ztring& getPath() const;
    bool empty() const;
    void clear();

    /// The text after the last separator; the whole path where there is none.
    Ztring getFileName() const;
    /// The text before the last separator; the whole path, not the empty text, where there is none.
    Ztring getDirectory() const;
    /// The file name of the path without its extension.
    Ztring getName() const;
    /// The text after the last "."; empty where there is none.
    Ztring getExtension() const;
    /// The path between double quotes.
    Ztring getQuotedFile() const;

    /// Extensions are given without their dot and searched with Kel::find, so case does not count. Whether "." and the
    /// extension occur anywhere in the path.
    bool endsIn(const Ztring& extension) const;
    /// Appends "." and the extension, unless the path endsIn() it.
    void addExtension(const Ztring& extension);
    /// Cuts the path at its last ".", if any.
    void removeExtension();
    /// Erases the last occurrence of "." and the extension, if any.
    void removeExtension(const Ztring& extension);

    /// Opens for reading in binary mode. After a failure the stream has its fail bit set.
    void open(std::ifstream& stream) const;
    /// Opens for writing in binary mode, truncating. After a failure the stream has its fail bit set.
    void open(std::ofstream& stream) const;
    /// std::fopen with the mode. The caller closes the handle, which is never null.
    std::FILE* fOpen(const char* mode) const;
    /// fOpen("w"): text mode, though reading is binary.
    std::FILE* openWrite() const;
    /// fOpen("rb").
    std::FILE* openRead() const;

    /// Copies the bytes of a text file up to its first zero byte, which is not copied. Nothing is copied to a stream
    /// that has failed already. A failure to read on is not told from the end of the file.
    void appendTo(std::ostream& out) const;

    /// Adds the context "Failed to read file: '%1'" (or "save"), translated and filled with the path.
    void annotateRead(Problem& problem) const;
    void annotateWrite(Problem& problem) const;

    /// Throws a Problem with the translated "Failed to open file: '%1'".
    [[noreturn]] void throwOpenFailed() const;
    /// Throws an empty Problem with the context of annotateRead() or annotateWrite().
    [[noreturn]] void throwReadingCorrupt() const;
    [[noreturn]] void throwWritingCorrupt() const;

private:
    Ztring m_path;
};

/// The position of the last occurrence of the needle when both texts are lower-cased or, where that finds nothing,
/// upper-cased; wxString::npos where neither does.
KEL_API std::size_t find(const Ztring& needle, const wxString& path);
} // namespace Kel
