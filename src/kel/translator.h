// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/kelapi.h>
#include <kel/ztring.h>

#include <string>

/// The single entry to the translation of messages.
///
/// A message is translated as a whole template, before its placeholders are filled. The catalogues are those that the
/// application has loaded into wxTranslations; where there are none, or none knows the text, the text stays as it is.
class KEL_API Translator
{
public:
    Translator() = delete;

    /// The translation of a literal in the default domain. The literal stands in the call itself, where the tools that
    /// collect the texts to translate find it.
    static Ztring tr(const Ztring& text);

    /// The same for texts that are not literals in the code.
    static Ztring translate(const Ztring& text);

    /// The translation of a literal that a script has marked as `trs("Open")`; a text without the marks is simply
    /// translated. The bytes are in the locale's encoding.
    static Ztring trTrimTrs(const std::string& text);
};
