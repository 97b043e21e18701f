// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/ztring.h>

#include <kel/problem.h>

#include "textcodec_p.h"

#include <wx/strconv.h>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <stdexcept>

namespace
{
// Makes a new text, so that target and value may be part of the old one.
void replaceAll(wxString& text, const wxString& target, const wxString& value)
{
    std::size_t found = target.empty() ? wxString::npos : text.find(target);
    if (found == wxString::npos)
        return;
    const std::wstring& from = text.ToStdWstring();
    const std::wstring& inserted = value.ToStdWstring();
    std::wstring result;
    std::size_t start = 0;
    for (; found != wxString::npos; found = text.find(target, start))
    {
        result.append(from, start, found - start).append(inserted);
        start = found + target.length();
    }
    result.append(from, start, std::wstring::npos);
    text = result;
}

std::string quoteForScript(const std::string& text)
{
    std::string quoted(1, '\'');
    for (const char c : text)
    {
        if (c == '\\' || c == '\'')
            quoted += '\\';
        quoted += c;
    }
    quoted += '\'';
    return quoted;
}
} // namespace

const Ztring Ztring::emptyZtring;

Ztring::Ztring() : m_text(new wxString) {}

Ztring::Ztring(const char* bytes)
    : m_text(new wxString(TextCodec::decode(bytes, bytes == nullptr ? 0 : std::strlen(bytes), wxConvLibc)))
{
}

Ztring::Ztring(const std::string& bytes)
    : m_text(new wxString(TextCodec::decode(bytes.data(), bytes.size(), wxConvLibc)))
{
}

Ztring::Ztring(const wxString& text) : m_text(new wxString(text)) {}

Ztring::Ztring(const Ztring& other) : m_text(new wxString(*other.m_text)) {}

Ztring& Ztring::operator=(const Ztring& other)
{
    if (this != &other)
        *m_text = *other.m_text;
    m_nextArg = 1;
    return *this;
}

Ztring& Ztring::operator=(Ztring&& other) noexcept
{
    std::swap(m_text, other.m_text);
    m_nextArg = other.m_nextArg = 1;
    return *this;
}

Ztring::~Ztring()
{
    delete m_text;
}

bool Ztring::operator==(const Ztring& other) const
{
    return m_text->length() == other.m_text->length() && m_text->compare(*other.m_text) == 0;
}

bool Ztring::operator!=(const Ztring& other) const
{
    return !(*this == other);
}

bool Ztring::operator<(const Ztring& other) const
{
    return m_text->compare(*other.m_text) < 0;
}

void Ztring::swap(Ztring& other) noexcept
{
    std::swap(m_text, other.m_text);
    std::swap(m_nextArg, other.m_nextArg);
}

unsigned int Ztring::length() const
{
    return static_cast<unsigned int>(m_text->length());
}

unsigned int Ztring::size() const
{
    return length();
}

bool Ztring::empty() const
{
    return m_text->empty();
}

void Ztring::clear()
{
    m_text->clear();
}

Ztring& Ztring::append(const Ztring& text)
{
    m_text->append(*text.m_text);
    return *this;
}

Ztring& Ztring::operator+=(const Ztring& text)
{
    return append(text);
}

Ztring& Ztring::operator+=(char c)
{
    m_text->append(1, TextCodec::decodeByte(c));
    return *this;
}

void Ztring::insert(unsigned int pos, unsigned int count, char c)
{
    if (pos > length())
        throw std::out_of_range("basic_string::insert");
    m_text->insert(pos, count, TextCodec::decodeByte(c));
}

void Ztring::remove(char c)
{
    std::wstring text = m_text->ToStdWstring();
    std::erase(text, TextCodec::decodeByte(c));
    *m_text = text;
}

void Ztring::makeText()
{
    remove('&');
    remove('.');
}

void Ztring::trimText()
{
    constexpr unsigned longest = 20;
    if (length() > longest)
        m_text->replace(longest - 3, wxString::npos, L"...");
}

bool Ztring::truncateAfter(const Ztring& marker)
{
    const std::size_t found = m_text->find(*marker.m_text);
    if (found == wxString::npos)
        return false;
    m_text->erase(found + marker.m_text->length());
    return true;
}

void Ztring::toLowerCase()
{
    m_text->MakeLower();
}

bool Ztring::has(const Ztring& text) const
{
    return m_text->find(*text.m_text) != wxString::npos;
}

void Ztring::argReplace(const Ztring& value) const
{
    const std::wstring placeholder = L"%" + std::to_wstring(m_nextArg);
    const std::size_t found = m_text->find(placeholder);
    if (found != wxString::npos)
        m_text->replace(found, placeholder.length(), *value.m_text);
    // Last, so that a call that fails for memory does not count.
    ++m_nextArg;
}

void Ztring::targetReplace(const Ztring& target, const Ztring& value) const
{
    replaceAll(*m_text, *target.m_text, *value.m_text);
}

const Ztring& Ztring::replaceAllIn(const Replacements& pairs) const
{
    Ztring replaced(*this);
    for (const auto& [target, value] : pairs)
        replaced.targetReplace(target, value);
    m_text->swap(*replaced.m_text);
    return *this;
}

std::string Ztring::toUtf8() const
{
    return TextCodec::encode(*m_text, wxMBConvUTF8());
}

void Ztring::fromUtf8(const std::string& bytes)
{
    const std::size_t length = std::strlen(bytes.c_str());
    wxString text = TextCodec::decode(bytes.data(), length, wxMBConvUTF8());
    // The converter lets most characters pass that are encoded in more bytes than they need, which is invalid.
    if (TextCodec::getUtf8Length(text) != length)
        text.clear();
    m_text->swap(text);
}

std::string Ztring::ascii() const
{
    std::string bytes;
    bytes.reserve(m_text->length());
    for (const wchar_t c : m_text->ToStdWstring())
        bytes += static_cast<wxUint32>(c) < 0x80 ? static_cast<char>(c) : '_';
    return bytes;
}

void Ztring::fromAscii(const std::string& bytes)
{
    std::wstring text;
    text.reserve(bytes.size());
    for (const char c : bytes)
        text += static_cast<wchar_t>(static_cast<unsigned char>(c));
    *m_text = text;
}

std::string Ztring::str() const
{
    return TextCodec::encode(*m_text, wxConvLibc);
}

Ztring::operator std::string() const
{
    return str();
}

std::wstring Ztring::wStdStr() const
{
    return m_text->ToStdWstring();
}

std::string Ztring::asStringScript() const
{
    return quoteForScript(toUtf8());
}

const wxString& Ztring::wx() const
{
    return *m_text;
}

void Ztring::throwProblem()
{
    Problem::throwProblem(emptyZtring);
}

std::ostream& operator<<(std::ostream& out, const Ztring& text)
{
    return out << text.str();
}
