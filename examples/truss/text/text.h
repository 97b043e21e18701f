// SPDX-License-Identifier: MIT
// truss: text
#pragma once

#include <kel/ztring.h>

#include <string>

namespace truss
{
/// A translated template with its placeholders "%1", "%2", ... replaced by the values in order.
template <class... Values>
Ztring fill(const Ztring& text, const Values&... values)
{
    const Ztring filled(text); // filling is const, yet changes the text
    (filled.argReplace(values), ...);
    return filled;
}

/// A number as messages show it: six significant digits.
template <class Number>
Ztring toText(Number number)
{
    Ztring text;
    Ztring::append(number, text);
    return text;
}

/// Text of a file; empty when the bytes are not UTF-8 or hold a zero.
inline Ztring fromUtf8(const std::string& bytes)
{
    Ztring text;
    if (bytes.find('\0') == std::string::npos)
        text.fromUtf8(bytes);
    return text;
}
} // namespace truss
