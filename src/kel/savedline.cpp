// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/savedline.h>

#include <kel/autodelete.h>
#include <kel/reader.h>

#include <sstream>

SavedLine::SavedLine(const std::string& line, const BulletinKey& key) : Bulletin(key), m_line(line) {}

SavedLine::~SavedLine() = default;

SavedLine::LineReader::LineReader(Reader& reader, const BulletinKey& key) : m_reader(reader)
{
    auto* const saved = dynamic_cast<SavedLine*>(reader.getPtr(key));
    if (!saved)
        return;
    m_line = std::make_unique<std::istringstream>(saved->getLine());
    const AutoDelete owned(saved);
    reader.removeByKey(key);
    // Last, so that the reader never keeps a stream that a failure has destroyed.
    m_previous = reader.set(m_line.get());
}

SavedLine::LineReader::~LineReader()
{
    if (m_previous)
        m_reader.set(m_previous);
}
