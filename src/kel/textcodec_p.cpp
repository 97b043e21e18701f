// SPDX-License-Identifier: MIT
// libkel: Foundations
#include "textcodec_p.h"

#include <wx/strconv.h>

#include <algorithm>

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
} // namespace

// ASCII is the same in all encodings here, and nearly all that is converted; the converters take many times as long.
//
// Both ways, the text is converted together with the NUL that ends it and into memory of our own: for any other text
// the converters make a copy, which is lost when there is no memory for the converted one.
wxString TextCodec::decode(const char* bytes, std::size_t length, const wxMBConv& conversion)
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

std::string TextCodec::encode(const wxString& text, const wxMBConv& conversion)
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

std::size_t TextCodec::getUtf8Length(const wxString& text)
{
    std::size_t length = 0;
    for (const wchar_t c : text.ToStdWstring())
        length += 1u + (c > 0x7F) + (c > 0x7FF) + (c > 0xFFFF);
    return length;
}

// Not wxUniChar::FromHi8bit, which reports a byte that it cannot decode as an error in the program.
wchar_t TextCodec::decodeByte(char c)
{
    if (static_cast<unsigned char>(c) < 0x80)
        return static_cast<wchar_t>(c);
    const char text[2] = {c, '\0'};
    wchar_t decoded[3] = {};
    return wxConvLibc.ToWChar(decoded, 3, text, 2) == wxCONV_FAILED ? L'?' : decoded[0];
}
