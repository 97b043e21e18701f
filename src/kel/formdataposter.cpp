// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/formdataposter.h>

#include <kel/file_kel.h>
#include <kel/platform.h>
#include <kel/status.h>

#include <algorithm>
#include <fstream>

namespace
{
constexpr std::size_t s_blockSize = 4096;
} // namespace

FormDataPoster::FormDataPoster()
    : m_boundary("----------ThIs_Is_tHe_bouNdaRY"),
      m_newLine("\r\n"),
      m_dashes("--"),
      m_disposition("Content-Disposition: form-data; name=\"")
{
}

void FormDataPoster::addField(const Ztring& name, const Ztring& value)
{
    appendPartHead(name);
    m_body.append("\"").append(m_newLine).append(m_newLine);
    m_body.append(value).append(m_newLine);
}

void FormDataPoster::addFileSection(const Ztring& name, const Ztring& fileName, const Ztring& contentType)
{
    appendPartHead(name);
    m_body.append("\"; filename=\"").append(fileName).append("\"").append(m_newLine);
    m_body.append("Content-Type: ").append(contentType).append(m_newLine).append(m_newLine);
}

void FormDataPoster::addFile(const Ztring& name, const Ztring& fileName, const Ztring& contentType,
                             const Array<char>& data)
{
    addFileSection(name, fileName, contentType);
    for (std::size_t start = 0; start < data.size(); start += s_blockSize)
        appendBytes(data.begin() + start, std::min(data.size() - start, s_blockSize));
    m_body.append(m_newLine);
}

void FormDataPoster::addFile(const Ztring& name, const Ztring& fileName, const Ztring& contentType,
                             const Kel::File& file)
{
    std::ifstream in;
    file.open(in);
    addFileSection(name, fileName, contentType);
    char block[s_blockSize];
    while (in.read(block, sizeof block) || in.gcount() > 0)
    {
        appendBytes(block, static_cast<std::size_t>(in.gcount()));
        Status::getSingleton().checkInterrupt(-1);
    }
    m_body.append(m_newLine);
}

void FormDataPoster::postTo(const Ztring& where, const Ztring& path, Ztring& response)
{
    m_body.append(m_dashes).append(m_boundary).append(m_dashes).append(m_newLine).append(m_newLine);
    Ztring contentType("multipart/form-data; boundary=");
    contentType.append(m_boundary);
    Platform::getSingleton()->postForm(where, path, "Content-Type", contentType, *this, response);
}

const Ztring& FormDataPoster::getBody() const
{
    return m_body;
}

const Ztring& FormDataPoster::getBoundary() const
{
    return m_boundary;
}

void FormDataPoster::appendPartHead(const Ztring& name)
{
    m_body.append(m_dashes).append(m_boundary).append(m_newLine).append(m_disposition).append(name);
}

void FormDataPoster::appendBytes(const char* bytes, std::size_t count)
{
    Ztring text;
    text.fromAscii(std::string(bytes, count));
    m_body.append(text);
}
