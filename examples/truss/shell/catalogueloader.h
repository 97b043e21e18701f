// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include <wx/translation.h>

#include <string>

namespace truss
{
/// Loads message catalogues from along the library's ResourcePaths: <directory>/<language>/LC_MESSAGES/<domain>.mo. The
/// toolkit's own loader looks in places that only a program with windows has.
class CatalogueLoader : public wxTranslationsLoader
{
public:
    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString& language) override;
    wxArrayString GetAvailableTranslations(const wxString& domain) const override;

    /// The path of the catalogue for a language; empty when there is none.
    static std::string find(const wxString& language, const wxString& domain);
};
} // namespace truss
