// SPDX-License-Identifier: MIT
// Real message catalogues, compiled by msgfmt and loaded into wxTranslations.
#pragma once

#include "support/temporarydirectory.h"

#include <gtest/gtest.h>
#include <wx/arrstr.h>
#include <wx/translation.h>

#include <cstdlib>
#include <initializer_list>
#include <sstream>
#include <string>
#include <utility>

/// While it lives, the texts have the translations that it was made with. Texts are in UTF-8 and escaped as in a
/// source file (a line feed is "\\n").
///
///     const Catalogue catalogue{{"Save", "Sichern"}, {"Open", "Auf"}};
class Catalogue
{
public:
    using Messages = std::initializer_list<std::pair<std::string, std::string>>;

    Catalogue(Messages messages)
    {
        const std::string source = m_directory.write("application.po", toSource(messages));
        const std::string target = m_directory / "application.mo";
        EXPECT_EQ(std::system(("msgfmt -o '" + target + "' '" + source + "'").c_str()), 0);
        // The toolkit takes over both objects, which the analyser does not know.
        // NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks)
        wxTranslations::Set(new wxTranslations);
        wxTranslations::Get()->SetLanguage("de");
        wxTranslations::Get()->SetLoader(new Loader(target));
        EXPECT_TRUE(wxTranslations::Get()->AddCatalog("application"));
        // NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)
    }
    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;
    ~Catalogue() { wxTranslations::Set(nullptr); }

private:
    /// Loads the one file there is. The toolkit's own loader looks for files in places that only a running
    /// application has.
    class Loader : public wxTranslationsLoader
    {
    public:
        explicit Loader(const std::string& file) : m_file(wxString::FromUTF8(file.c_str())) {}

        wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString&) override
        {
            return wxMsgCatalog::CreateFromFile(m_file, domain);
        }

        wxArrayString GetAvailableTranslations(const wxString&) const override
        {
            wxArrayString languages;
            languages.Add("de");
            return languages;
        }

    private:
        wxString m_file;
    };

    static std::string toSource(Messages messages)
    {
        std::ostringstream source;
        source << "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";
        for (const auto& [text, translation] : messages)
            source << "\nmsgid \"" << text << "\"\nmsgstr \"" << translation << "\"\n";
        return source.str();
    }

    TemporaryDirectory m_directory;
};
