// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/filereader.h>

#include <kel/branding.h>
#include <kel/file_kel.h>
#include <kel/reader.h>
#include <kel/zassert.h>

FileReader::FileReader() = default;

FileReader::~FileReader() = default;

Reader* FileReader::open(const Kel::File& file, bool showStatus)
{
    KEL_ASSERT(!m_in, "!valid(m_in)");
    KEL_ASSERT(!m_reader, "!valid(m_reader)");
    auto in = std::make_unique<std::ifstream>();
    file.open(*in);
    m_reader = std::make_unique<Reader>(*in, Branding::getSingleton()->getProduct(), showStatus);
    m_in = std::move(in);
    return m_reader.get();
}
