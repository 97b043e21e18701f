// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/language.h"

#include "truss/shell/catalogueloader.h"
#include "truss/text/text.h"

#include <kel/branding.h>
#include <kel/resourcepaths.h>
#include <kel/stringtokenizer.h>

#include <langinfo.h>
#include <wx/translation.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace truss
{
namespace
{
constexpr const char* domain = "truss";

std::string getVariable(const std::string& name)
{
    const char* const value = std::getenv(name.c_str());
    return value != nullptr ? value : "";
}

/// Where the program is installed, if that is said, and next to the program.
void addResourcePaths()
{
    const std::string installed = getVariable(Branding::getSingleton()->getInstallDirVariable());
    if (!installed.empty())
        ResourcePaths::getSingleton()->addPath(fromUtf8(installed + "/locale"));
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error)
        ResourcePaths::getSingleton()->addPath(fromUtf8((program.parent_path() / "locale").string()));
}

/// "de_DE.UTF-8" and "de@euro" are found as "de" too.
wxString findLanguage(const std::string& name)
{
    for (const auto length : {name.find_first_of(".@"), name.find_first_of("_.@")})
    {
        const wxString language = wxString::FromUTF8(name.substr(0, length).c_str());
        if (!language.empty() && !CatalogueLoader::find(language, domain).empty())
            return language;
    }
    return wxString();
}

wxString chooseLanguage()
{
    const std::string wanted = getVariable("LANGUAGE") + ':' + std::setlocale(LC_MESSAGES, nullptr);
    for (StringTokenizer names(wanted, ':'); names.hasNext();)
    {
        if (names.m_token.rfind("en", 0) == 0)
            break; // what the program speaks anyway
        const wxString language = findLanguage(names.m_token);
        if (!language.empty())
            return language;
    }
    return wxString();
}
} // namespace

void Language::setLocale()
{
    std::setlocale(LC_ALL, "");
    if (std::string(nl_langinfo(CODESET)) == "ANSI_X3.4-1968") // as the C library calls ASCII
        std::setlocale(LC_CTYPE, "C.UTF-8");
}

void Language::loadCatalogue()
{
    addResourcePaths();
    const wxString language = chooseLanguage();
    if (language.empty())
        return;
    wxTranslations::Set(new wxTranslations);
    wxTranslations::Get()->SetLoader(new CatalogueLoader);
    wxTranslations::Get()->SetLanguage(language);
    wxTranslations::Get()->AddCatalog(domain);
}
} // namespace truss
