// SPDX-License-Identifier: MIT
// libkel: Application services
#pragma once

#include <kel/array.h>
#include <kel/ztring.h>

#include <string>

/// The names by which the product presents itself, and the addresses and credit lines made from them.
///
/// A product sets its values once, at start-up; until then those of the library apply. Values must not contain "%"
/// followed by a digit, which is not checked.
class KEL_API Branding
{
public:
    /// Has the values of the library and no credits.
    Branding();
    ~Branding() = default;

    Branding(const Branding&) = delete;
    Branding& operator=(const Branding&) = delete;

    /// The instance that the process uses; it lives until exit.
    static Branding* getSingleton();

    /// @name Values
    /// @{

    /// Replaces all values but the credits.
    void set(const Ztring& company, const Ztring& product, const Ztring& productLower, const Ztring& shortCompany,
             const std::string& webHost, const std::string& emailPattern, const std::string& installMutex,
             const std::string& installDirVariable, const std::string& tag);

    /// Replaces the web host and returns the one before, so that the caller can restore it.
    std::string setUrl(const std::string& webHost);

    /// Appends a credit for a library or component that the product uses.
    void addPoweredBy(const Ztring& credit);

    /// The maker's name, in full and as a lower-case abbreviation.
    const Ztring& getCompany() const { return m_company; }
    const Ztring& getShortCompany() const { return m_shortCompany; }

    /// The product's name, as shown and as used in paths.
    const Ztring& getProduct() const { return m_product; }
    const Ztring& getProductLower() const { return m_productLower; }

    /// Host name of the web site, without scheme or path.
    const std::string& getWebHost() const { return m_webHost; }

    /// An e-mail address whose local part is "%1".
    const std::string& getEmailPattern() const { return m_emailPattern; }

    /// Name of the system-wide lock by which an installer notices a running copy.
    const std::string& getInstallMutex() const { return m_installMutex; }

    /// Name of the environment variable that points at the installation.
    const std::string& getInstallDirVariable() const { return m_installDirVariable; }

    /// First path segment of the download addresses.
    const std::string& getTag() const { return m_tag; }

    /// The credits, in the order in which they were added.
    const Array<Ztring>& getPoweredBy() const { return m_poweredBy; }

    /// @}
    /// @name Addresses
    /// All but createUrl and createEmail ask the Platform, which must be installed. Pages are taken as given.
    /// @{

    /// "http://", the web host, "/" and the page.
    std::string createUrl(const std::string& page) const;

    /// The address of a help page: "files/", the lower-case product, the operating system's name, the release's name
    /// and the page with ".html".
    std::string createEmbeddedUrl(const std::string& page) const;

    /// The address of a download: the tag, the operating system's name and the page.
    std::string createOsUrl(const std::string& page) const;

    /// As createOsUrl, with the word size behind the operating system's name.
    std::string createOsBitUrl(const std::string& page) const;

    /// The address of a user at the maker's mail domain.
    std::string createEmail(const std::string& user) const;

    /// @}
    /// @name Texts for generated files
    /// These are not translated.
    /// @{

    /// Appends the line that tells what made a file and when (in UTC), without a line end.
    void appendCredit(Ztring& out) const;

    /// Appends the credits, each indented by two spaces and ended by "\n".
    void appendPoweredByTo(Ztring& out) const;

    /// @}

private:
    std::string createDownloadUrl(const std::string& system, const std::string& page) const;

    Ztring m_company;
    Ztring m_product;
    Ztring m_productLower;
    Ztring m_shortCompany;
    std::string m_webHost;
    std::string m_emailPattern;
    std::string m_installMutex;
    std::string m_installDirVariable;
    std::string m_tag;
    Array<Ztring> m_poweredBy;
};
