// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/translator.h>

#include <wx/translation.h>

namespace
{
void eraseFirst(std::string& text, const std::string& target)
{
    const auto found = text.find(target);
    if (found != std::string::npos)
        text.erase(found, target.size());
}
} // namespace

Ztring Translator::tr(const Ztring& text)
{
    const wxTranslations* const translations = wxTranslations::Get();
    if (translations == nullptr)
        return text;
    const wxString* const translation = translations->GetTranslatedString(text.wx());
    return translation != nullptr ? Ztring(*translation) : text;
}

Ztring Translator::translate(const Ztring& text)
{
    return tr(text);
}

Ztring Translator::trTrimTrs(const std::string& text)
{
    std::string literal = text;
    eraseFirst(literal, "trs(\"");
    eraseFirst(literal, "\")");
    return translate(literal);
}
