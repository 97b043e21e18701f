// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/catalogueloader.h"

#include <kel/resourcepaths.h>

#include <wx/arrstr.h>

#include <filesystem>
#include <system_error>

namespace truss
{
wxMsgCatalog* CatalogueLoader::LoadCatalog(const wxString& domain, const wxString& language)
{
    const std::string path = find(language, domain);
    return path.empty() ? nullptr : wxMsgCatalog::CreateFromFile(wxString::FromUTF8(path.c_str()), domain);
}

wxArrayString CatalogueLoader::GetAvailableTranslations(const wxString&) const
{
    return wxArrayString();
}

std::string CatalogueLoader::find(const wxString& language, const wxString& domain)
{
    for (const Ztring& directory : *ResourcePaths::getSingleton())
    {
        const auto path = std::filesystem::path(directory.toUtf8()) / std::string(language.utf8_str()) / "LC_MESSAGES" /
                          std::string((domain + ".mo").utf8_str());
        std::error_code ignored;
        if (std::filesystem::exists(path, ignored))
            return path.string();
    }
    return std::string();
}
} // namespace truss
