// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/filewriter.h>

#include <kel/branding.h>
#include <kel/file_kel.h>
#include <kel/platform.h>
#include <kel/texthelper.h>
#include <kel/writer.h>
#include <kel/zassert.h>
#include <kel/ztring.h>

#include <string>

namespace
{
Kel::File getTemporary(const Kel::File& target)
{
    Ztring path(target.getPath());
    path += ".tmp";
    return path;
}

Ztring getHeader()
{
    const Branding& branding = *Branding::getSingleton();
    std::string now;
    TextHelper::appendTimeDateNow(now, "%d %b %Y %H:%M:%S");
    Ztring header("%1 Copyright (c) %2 %3");
    header.argReplace(branding.getProduct());
    header.argReplace(branding.getCompany());
    header.argReplace(now);
    return header;
}

/// Deletes a file if it exists and can be read. Allocates nothing itself: the destructor calls it.
void removeFile(const Kel::File& file, const std::string& path, bool quiet)
{
    std::filebuf in;
    char buffer = 0; // else the stream would allocate one
    in.pubsetbuf(&buffer, 1);
    if (in.open(path, std::ios_base::in | std::ios_base::binary) == nullptr)
        return;
    in.close();
    Platform::getSingleton()->deleteFile(file, quiet);
}

void requireReadable(const Kel::File& file)
{
    std::ifstream in;
    file.open(in);
}

void removeFileQuietly(const Kel::File& file, const std::string& path) noexcept
{
    try
    {
        removeFile(file, path, true);
    }
    catch (...)
    {
        // A temporary file that stays behind does no harm, and nobody is left to tell.
    }
}
} // namespace

FileWriter::FileWriter() = default;

FileWriter::~FileWriter()
{
    m_writer.reset();
    m_out.reset();
    if (m_file && !m_isClosing)
        removeFileQuietly(*m_temporary, m_temporaryPath);
}

Writer* FileWriter::open(const Kel::File& target, bool showStatus)
{
    KEL_ASSERT(!m_file, "!valid(m_file)");
    KEL_ASSERT(!m_out, "!valid(m_out)");
    KEL_ASSERT(!m_writer, "!valid(m_writer)");
    auto file = std::make_unique<Kel::File>(target);
    m_temporary = std::make_unique<Kel::File>(getTemporary(target));
    m_temporaryPath = m_temporary->getPath().toUtf8();
    auto out = std::make_unique<std::ofstream>();
    m_temporary->open(*out);
    try
    {
        m_writer = std::make_unique<Writer>(*out, getHeader(), showStatus);
    }
    catch (...)
    {
        out.reset();
        removeFileQuietly(*m_temporary, m_temporaryPath);
        throw;
    }
    m_out = std::move(out);
    m_file = std::move(file);
    return m_writer.get();
}

void FileWriter::close()
{
    KEL_ASSERT(m_file, "valid(m_file)");
    m_writer.reset();
    m_out.reset();
    // The old file must not go without a new one to take its place.
    requireReadable(*m_temporary);
    const std::string path = m_file->getPath().toUtf8();
    m_isClosing = true;
    removeFile(*m_file, path, false);
    Platform::getSingleton()->moveFile(*m_temporary, *m_file, false);
    m_file.reset();
    m_isClosing = false;
}
