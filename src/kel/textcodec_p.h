// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <wx/string.h>

#include <cstddef>
#include <string>

class wxMBConv;

/// Conversions between texts and bytes, where the converters of the toolkit are slow, lose memory or let pass what is
/// no character.
namespace TextCodec
{
/// The text that the bytes mean; empty where they mean none.
wxString decode(const char* bytes, std::size_t length, const wxMBConv& conversion);
/// The bytes of a text; empty where an encoding cannot express it.
std::string encode(const wxString& text, const wxMBConv& conversion);
/// The character of a single byte in the locale's encoding; "?" where it is none.
wchar_t decodeByte(char c);
/// The bytes that a text has in UTF-8.
std::size_t getUtf8Length(const wxString& text);
} // namespace TextCodec
