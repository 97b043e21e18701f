// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/ztring.h>

#include <kel/problem.h>

#include <wx/strconv.h>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <stdexcept>

namespace
{
bool isCodePoint(wchar_t c)
{
    return static_cast<wxUint32>(c) <= 0x10FFFF;
}

// The converters are of two minds about what lies past the last code point: some let it pass, some report it as an
// error in the program. No text with it leaves or enters here.
bool isConvertible(const std::wstring& wide)
{
    return std::all_of(wide.begin(), wide.end(), isCodePoint);
}

template <class Iterator>
bool isAscii(Iterator first, Iterator last)
{
    return std::all_of(first, last, [](auto c) { return static_cast<wxUint32>(c) < 0x80; });
}

// ASCII is the same in all encodings here, and nearly all that is converted; the converters take many times as long.
//
// Both ways, the text is converted together with the NUL that ends it and into memory of our own: for any other text
// the converters make a copy, which is lost when there is no memory for the converted one.
wxString decode(const char* bytes, std::size_t length, const wxMBConv& conversion)
{
    if (isAscii(bytes, bytes + length))
        return std::wstring(bytes, bytes + length);
    const std::size_t size = conversion.ToWChar(nullptr, 0, bytes, length + 1);
    if (size == wxCONV_FAILED)
        return wxString();
    std::wstring wide(size, L'\0');
    conversion.ToWChar(wide.data(), size, bytes, length + 1);
    wide.pop_back();
    return isConvertible(wide) ? wide : std::wstring();
}

std::string encode(const wxString& text, const wxMBConv& conversion)
{
    const std::wstring& wide = text.ToStdWstring();
    if (isAscii(wide.begin(), wide.end()))
        return std::string(wide.begin(), wide.end());
    if (!isConvertible(wide))
        return std::string();
    const std::size_t size = conversion.FromWChar(nullptr, 0, wide.c_str(), wide.size() + 1);
    if (size == wxCONV_FAILED)
        return std::string();
    std::string bytes(size, '\0');
    conversion.FromWChar(bytes.data(), size, wide.c_str(), wide.size() + 1);
    bytes.pop_back();
    return bytes;
}

std::size_t getUtf8Length(const wxString& text)
{
    std::size_t length = 0;
    for (const wchar_t c : text.ToStdWstring())
        length += 1u + (c > 0x7F) + (c > 0x7FF) + (c > 0xFFFF);
    return length;
}

// Not wxUniChar::FromHi8bit, which reports a byte that it cannot decode as an error in the program.
wchar_t decodeByte(char c)
{
    if (static_cast<unsigned char>(c) < 0x80)
        return static_cast<wchar_t>(c);
    const char text[2] = {c, '\0'};
    wchar_t decoded[3] = {};
    return wxConvLibc.ToWChar(decoded, 3, text, 2) == wxCONV_FAILED ? L'?' : decoded[0];
}

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
    : m_text(new wxString(decode(bytes, bytes == nullptr ? 0 : std::strlen(bytes), wxConvLibc)))
{
}

Ztring::Ztring(const std::string& bytes) : m_text(new wxString(decode(bytes.data(), bytes.size(), wxConvLibc))) {}

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
    m_text->append(1, decodeByte(c));
    return *this;
}

void Ztring::insert(unsigned int pos, unsigned int count, char c)
{
    if (pos > length())
        throw std::out_of_range("basic_string::insert");
    m_text->insert(pos, count, decodeByte(c));
}

void Ztring::remove(char c)
{
    std::wstring text = m_text->ToStdWstring();
    std::erase(text, decodeByte(c));
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
    return encode(*m_text, wxMBConvUTF8());
}

void Ztring::fromUtf8(const std::string& bytes)
{
    const std::size_t length = std::strlen(bytes.c_str());
    wxString text = decode(bytes.data(), length, wxMBConvUTF8());
    // The converter lets most characters pass that are encoded in more bytes than they need, which is invalid.
    if (getUtf8Length(text) != length)
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
    return encode(*m_text, wxConvLibc);
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
