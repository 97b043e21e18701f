// SPDX-License-Identifier: MIT
// libkel: Application services
#pragma once

#include <kel/array.h>
#include <kel/ztring.h>

#include <cstddef>

namespace Kel
{
class File;
}

/// Assembles the body of an HTTP request of type multipart/form-data (RFC 2046, RFC 7578) and has the Platform post it.
///
///     FormDataPoster form;
///     form.addField("title", "Crash report");
///     form.addFile("model", "bridge.mdl", "application/octet-stream", Kel::File(path));
///     Ztring response;
///     form.postTo("www.example.org", "/upload", response);
///
/// Parts are appended in the order of the calls. A poster serves one request. The body is wide text in which each
/// character stands for one byte (ISO-8859-1); that names and values keep to ASCII, and that no part contains the
/// boundary, is not checked.
class KEL_API FormDataPoster
{
public:
    FormDataPoster();

    /// Appends a text field.
    void addField(const Ztring& name, const Ztring& value);

    /// Appends the head of a file part; its data and a closing line end have to follow.
    void addFileSection(const Ztring& name, const Ztring& fileName, const Ztring& contentType);

    /// Appends a file part with the given bytes.
    void addFile(const Ztring& name, const Ztring& fileName, const Ztring& contentType, const Array<char>& data);

    /// Appends a file part with the bytes of a file, and calls Status::checkInterrupt with -1 after each block of up to
    /// 4096 bytes, for which the Status must exist.
    ///
    /// A file that cannot be opened throws "Failed to open file: '%1'" and leaves the body as it was. A failure to read
    /// on is not told from the end of the file. An Interrupted leaves part of the file in the body; the poster is of no
    /// use any more.
    void addFile(const Ztring& name, const Ztring& fileName, const Ztring& contentType, const Kel::File& file);

    /// Closes the body and sends it through Platform::postForm, which fills `response` with the server's reply. A
    /// Platform must be installed, which is not checked.
    void postTo(const Ztring& where, const Ztring& path, Ztring& response);

    /// What is sent.
    const Ztring& getBody() const;

    /// The text that separates the parts.
    const Ztring& getBoundary() const;

private:
    void appendPartHead(const Ztring& name);
    void appendBytes(const char* bytes, std::size_t count);

    Ztring m_body;
    Ztring m_boundary;
    Ztring m_newLine;
    Ztring m_dashes;
    Ztring m_disposition;
};
