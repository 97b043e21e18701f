// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/file_kel.h>

#include <kel/problem.h>
#include <kel/translator.h>

#include <algorithm>
#include <fstream>

namespace
{
const wchar_t* const s_separators = L"\\/";

Ztring dotted(const Ztring& extension)
{
    return Ztring(".").append(extension);
}

// The system would open the file that is named by what stands before the zero byte.
bool hasZeroByte(const std::string& path)
{
    return path.find('\0') != std::string::npos;
}

// A stream that is set to throw does so with a failure of its own, which says nothing about the file.
template <class Stream>
bool openStream(Stream& stream, const std::string& path, std::ios_base::openmode mode)
{
    try
    {
        if (hasZeroByte(path))
            stream.setstate(std::ios_base::failbit);
        else
            stream.open(path, mode);
    }
    catch (const std::ios_base::failure&)
    {
        return false;
    }
    return !stream.fail();
}
} // namespace

namespace Kel
{
File::File(const Ztring& path) : m_path(path) {}

File& File::operator=(const Ztring& path)
{
    m_path = path;
    return *this;
}

const Ztring& File::getPath() const
{
    return m_path;
}

bool File::empty() const
{
    return m_path.empty();
}

void File::clear()
{
    m_path.clear();
}

Ztring File::getFileName() const
{
    const wxString& path = m_path.wx();
    const std::size_t separator = path.find_last_of(s_separators);
    return separator == wxString::npos ? m_path : Ztring(path.substr(separator + 1));
}

Ztring File::getDirectory() const
{
    const wxString& path = m_path.wx();
    const std::size_t separator = path.find_last_of(s_separators);
    return separator == wxString::npos ? m_path : Ztring(path.substr(0, separator));
}

Ztring File::getName() const
{
    File file(*this);
    file.removeExtension();
    return file.getFileName();
}

Ztring File::getExtension() const
{
    const wxString& path = m_path.wx();
    const std::size_t dot = path.rfind(L'.');
    return dot == wxString::npos ? Ztring::emptyZtring : Ztring(path.substr(dot + 1));
}

Ztring File::getQuotedFile() const
{
    return Ztring("\"").append(m_path).append("\"");
}

bool File::endsIn(const Ztring& extension) const
{
    return find(dotted(extension), m_path.wx()) != wxString::npos;
}

void File::addExtension(const Ztring& extension)
{
    if (!endsIn(extension))
        m_path.append(dotted(extension));
}

void File::removeExtension()
{
    const wxString& path = m_path.wx();
    const std::size_t dot = path.rfind(L'.');
    if (dot != wxString::npos)
        m_path = path.substr(0, dot);
}

void File::removeExtension(const Ztring& extension)
{
    const Ztring target = dotted(extension);
    wxString path = m_path.wx();
    const std::size_t found = find(target, path);
    if (found != wxString::npos)
        m_path = path.erase(found, target.length());
}

void File::open(std::ifstream& stream) const
{
    if (!openStream(stream, m_path.toUtf8(), std::ios_base::in | std::ios_base::binary))
        throwOpenFailed();
}

void File::open(std::ofstream& stream) const
{
    if (!openStream(stream, m_path.toUtf8(), std::ios_base::out | std::ios_base::binary | std::ios_base::trunc))
        throwOpenFailed();
}

std::FILE* File::fOpen(const char* mode) const
{
    const std::string path = m_path.toUtf8();
    std::FILE* const handle = hasZeroByte(path) ? nullptr : std::fopen(path.c_str(), mode);
    if (handle == nullptr)
        throwOpenFailed();
    return handle;
}

std::FILE* File::openWrite() const
{
    return fOpen("w");
}

std::FILE* File::openRead() const
{
    return fOpen("rb");
}

void File::appendTo(std::ostream& out) const
{
    std::ifstream in;
    open(in);
    char block[4096];
    bool ended = false;
    while (!ended && out)
    {
        in.read(block, sizeof block);
        const char* const blockEnd = block + in.gcount();
        const char* const end = std::find<const char*>(block, blockEnd, '\0');
        out.write(block, end - block);
        ended = end != blockEnd || !in;
    }
}

void File::annotateRead(Problem& problem) const
{
    const Ztring message = Translator::tr("Failed to read file: '%1'");
    message.argReplace(m_path);
    problem.annotate(message);
}

void File::annotateWrite(Problem& problem) const
{
    const Ztring message = Translator::tr("Failed to save file: '%1'");
    message.argReplace(m_path);
    problem.annotate(message);
}

void File::throwOpenFailed() const
{
    const Ztring message = Translator::tr("Failed to open file: '%1'");
    message.argReplace(m_path);
    Problem::throwProblem(message);
}

void File::throwReadingCorrupt() const
{
    Problem problem(Ztring::emptyZtring);
    annotateRead(problem);
    throw problem;
}

void File::throwWritingCorrupt() const
{
    Problem problem(Ztring::emptyZtring);
    annotateWrite(problem);
    throw problem;
}

std::size_t find(const Ztring& needle, const wxString& path)
{
    const std::size_t found = path.Lower().rfind(needle.wx().Lower());
    return found != wxString::npos ? found : path.Upper().rfind(needle.wx().Upper());
}
} // namespace Kel
