// SPDX-License-Identifier: MIT
// Conversions and operations of the text type: there and back is equal, and each operation is what it is on a
// std::wstring.
#include <kel/ztring.h>

#include "support/fuzzing.h"

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace
{
enum class Surrogates
{
    Refused,
    Kept
};

bool isCharacter(std::uint32_t code, Surrogates surrogates)
{
    return code <= 0x10FFFF && (surrogates == Surrogates::Kept || code < 0xD800 || code > 0xDFFF);
}

/// Decodes UTF-8 in its shortest form. The library's own converter lets surrogates pass both ways, so that no text is
/// lost in a file; the locale's does not.
bool decode(const std::string& bytes, std::wstring& text, Surrogates surrogates)
{
    constexpr std::uint32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    for (std::size_t next = 0; next < bytes.size();)
    {
        const auto first = static_cast<unsigned char>(bytes[next++]);
        const unsigned more = first < 0x80   ? 0
                              : first < 0xC0 ? 4
                              : first < 0xE0 ? 1
                              : first < 0xF0 ? 2
                              : first < 0xF8 ? 3
                                             : 4;
        if (more == 4 || bytes.size() - next < more)
            return false;
        std::uint32_t code = more == 0 ? first : first & (0x3Fu >> more);
        for (unsigned i = 0; i < more; ++i)
        {
            const auto byte = static_cast<unsigned char>(bytes[next++]);
            if ((byte & 0xC0) != 0x80)
                return false;
            code = code << 6 | (byte & 0x3F);
        }
        if (code < smallest[more] || !isCharacter(code, surrogates))
            return false;
        text += static_cast<wchar_t>(code);
    }
    return true;
}

void expectUtf8(const std::string& bytes)
{
    const std::string untilNul = bytes.c_str();
    std::wstring expected;
    Ztring text("before");
    text.fromUtf8(bytes);
    if (!decode(untilNul, expected, Surrogates::Kept))
    {
        EXPECT_PROPERTY(text.empty());
        return;
    }
    EXPECT_PROPERTY(text.wStdStr() == expected);
    EXPECT_PROPERTY(text.toUtf8() == untilNul);
    EXPECT_PROPERTY(text.length() == expected.size() && text.size() == text.length());
}

/// In this locale, bytes are UTF-8; all of them count, the NULs too.
void expectLocale(const std::string& bytes)
{
    std::wstring expected;
    const Ztring text(bytes);
    if (!decode(bytes, expected, Surrogates::Refused))
        EXPECT_PROPERTY(text.empty() && text.str().empty());
    else
        EXPECT_PROPERTY(text.wStdStr() == expected && text.str() == bytes && text.toUtf8() == bytes);
    EXPECT_PROPERTY(Ztring(bytes.c_str()) == Ztring(std::string(bytes.c_str())));
}

void expectAscii(const std::string& bytes)
{
    Ztring text;
    text.fromAscii(bytes);
    EXPECT_PROPERTY(text.length() == bytes.size());
    std::string expected = bytes;
    std::replace_if(
        expected.begin(), expected.end(), [](char c) { return c < 0; }, '_');
    EXPECT_PROPERTY(text.ascii() == expected);
    Ztring again;
    again.fromAscii(expected);
    EXPECT_PROPERTY(again.ascii() == expected && again.str() == expected);
}

/// Any codes at all, such as no decoding gives.
void expectWide(const std::string& bytes)
{
    std::wstring codes;
    bool isText = true;
    bool hasSurrogates = false;
    for (std::size_t i = 0; i + 3 <= bytes.size(); i += 3)
    {
        const auto get = [&bytes, i](std::size_t at)
        { return std::uint32_t{static_cast<unsigned char>(bytes[i + at])}; };
        const std::uint32_t code = get(0) << 16 | get(1) << 8 | get(2);
        codes += static_cast<wchar_t>(code);
        isText = isText && isCharacter(code, Surrogates::Kept);
        hasSurrogates = hasSurrogates || !isCharacter(code, Surrogates::Refused);
    }
    const Ztring text{wxString(codes)};
    EXPECT_PROPERTY(text.wStdStr() == codes);
    const std::string utf8 = text.toUtf8();
    std::wstring decoded;
    EXPECT_PROPERTY(decode(utf8, decoded, Surrogates::Kept));
    EXPECT_PROPERTY(isText ? decoded == codes : utf8.empty());
    EXPECT_PROPERTY(text.str() == (hasSurrogates ? "" : utf8));
}

void expectScript(const Ztring& text)
{
    const std::string script = text.asStringScript();
    EXPECT_PROPERTY(script.size() >= 2 && script.front() == '\'' && script.back() == '\'');
    std::string plain;
    for (std::size_t i = 1; i + 1 < script.size(); ++i)
    {
        EXPECT_PROPERTY(script[i] != '\'');
        i += script[i] == '\\';
        EXPECT_PROPERTY(i + 1 < script.size());
        plain += script[i];
    }
    EXPECT_PROPERTY(plain == text.toUtf8());
}

std::wstring replaceAll(std::wstring text, const std::wstring& target, const std::wstring& value)
{
    for (std::size_t at = 0; !target.empty() && (at = text.find(target, at)) != std::wstring::npos; at += value.size())
        text.replace(at, target.size(), value);
    return text;
}

void expectReplacing(const Ztring& text, const Ztring& target, const Ztring& value)
{
    const std::wstring wide = text.wStdStr();
    const std::size_t found = wide.find(target.wStdStr());
    EXPECT_PROPERTY(text.has(target) == (found != std::wstring::npos));

    Ztring replaced(text);
    replaced.targetReplace(target, value);
    EXPECT_PROPERTY(replaced.wStdStr() == replaceAll(wide, target.wStdStr(), value.wStdStr()));

    Ztring filled(text);
    std::wstring model = wide;
    for (const wchar_t* const placeholder : {L"%1", L"%2", L"%3"})
    {
        filled.argReplace(value);
        if (const std::size_t at = model.find(placeholder); at != std::wstring::npos)
            model.replace(at, 2, value.wStdStr());
    }
    EXPECT_PROPERTY(filled.wStdStr() == model);

    Ztring truncated(text);
    EXPECT_PROPERTY(truncated.truncateAfter(target) == (found != std::wstring::npos));
    EXPECT_PROPERTY(truncated.wStdStr() ==
                    (found == std::wstring::npos ? wide : wide.substr(0, found + target.length())));

    EXPECT_PROPERTY((text == target) == (wide == target.wStdStr()) && (text != target) != (text == target));
    EXPECT_PROPERTY((text < target) == (wide < target.wStdStr()));
    EXPECT_PROPERTY(Ztring(text).append(target).wStdStr() == wide + target.wStdStr());
}

void expectEditing(const Ztring& text, char byte)
{
    std::wstring model = text.wStdStr();
    const wchar_t code = byte < 0 ? L'?' : static_cast<wchar_t>(byte);
    Ztring edited(text);
    edited += byte;
    EXPECT_PROPERTY(edited.wStdStr() == model + code);
    const unsigned position = static_cast<unsigned char>(byte);
    if (position <= edited.length())
    {
        edited.insert(position, 3, byte);
        EXPECT_PROPERTY(edited.wStdStr() == (model + code).insert(position, 3, code));
    }
    edited.remove(byte);
    std::erase(model, code);
    EXPECT_PROPERTY(edited.wStdStr() == model);

    edited.makeText();
    std::erase(model, L'&');
    std::erase(model, L'.');
    EXPECT_PROPERTY(edited.wStdStr() == model);
    edited.trimText();
    EXPECT_PROPERTY(edited.wStdStr() == (model.size() > 20 ? model.substr(0, 17) + L"..." : model));
    const std::wstring once = edited.wStdStr();
    edited.trimText();
    EXPECT_PROPERTY(edited.wStdStr() == once);
    edited.toLowerCase();
    Ztring lower(edited);
    lower.toLowerCase();
    EXPECT_PROPERTY(lower == edited);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const char* const locale = std::setlocale(LC_ALL, "C.UTF-8");
    EXPECT_PROPERTY(locale);
    Input input(data, size);
    const char byte = input.takeByte();
    const std::string first = input.takePart();
    const std::string second = input.takePart();
    const std::string bytes = input.takeRest();
    expectUtf8(first);
    expectLocale(first);
    expectAscii(first);
    expectWide(first);
    const Ztring text(bytes);
    expectScript(text);
    expectReplacing(text, first, second);
    expectEditing(text, byte);
    return 0;
}
