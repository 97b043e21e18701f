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

/// Deletes a file if it exists and can be read.
void removeFile(const Kel::File& file, bool quiet)
{
    std::ifstream in(file.getPath().toUtf8(), std::ios_base::binary);
    if (!in.is_open())
        return;
    in.close();
    Platform::getSingleton()->deleteFile(file, quiet);
}

void requireReadable(const Kel::File& file)
{
    std::ifstream in;
    file.open(in);
}

void removeTemporaryQuietly(const Kel::File& target) noexcept
{
    try
    {
        removeFile(getTemporary(target), true);
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
        removeTemporaryQuietly(*m_file);
}

Writer* FileWriter::open(const Kel::File& target, bool showStatus)
{
    KEL_ASSERT(!m_file, "!valid(m_file)");
    KEL_ASSERT(!m_out, "!valid(m_out)");
    KEL_ASSERT(!m_writer, "!valid(m_writer)");
    auto file = std::make_unique<Kel::File>(target);
    auto out = std::make_unique<std::ofstream>();
    getTemporary(target).open(*out);
    try
    {
        m_writer = std::make_unique<Writer>(*out, getHeader(), showStatus);
    }
    catch (...)
    {
        out.reset();
        removeTemporaryQuietly(target);
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
    const Kel::File temporary = getTemporary(*m_file);
    // The old file must not go without a new one to take its place.
    requireReadable(temporary);
    m_isClosing = true;
    removeFile(*m_file, false);
    Platform::getSingleton()->moveFile(temporary, *m_file, false);
    m_file.reset();
    m_isClosing = false;
}
