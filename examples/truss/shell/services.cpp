// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/services.h"

#include "truss/platform/linuxplatform.h"
#include "truss/shell/bell.h"
#include "truss/shell/consolelog.h"

#include <kel/appversion.h>
#include <kel/branding.h>
#include <kel/dynamicfactory.h>
#include <kel/version.h>

#include <memory>

namespace truss
{
namespace
{
/// Puts a service on the board where the library looks for it; the board destroys it at exit.
template <class Service>
void add()
{
    DynamicFactory::getSingleton().adopt(std::make_unique<Service>());
}

void setBranding()
{
    Branding::getSingleton()->set("Pinjoint", "Truss", "truss", "pin", "www.truss.example", "%1@truss.example",
                                  "TrussInstallMutex", "TRUSS_DIR", "trussm");
    Branding::getSingleton()->addPoweredBy("Eigen");
    Branding::getSingleton()->addPoweredBy("cairo");
    Branding::getSingleton()->addPoweredBy("libcurl");
}

/// Written into every document; a document of a newer version is refused.
void setVersion()
{
    *AppVersion::getCurrent() = Version(1, 0, 0, AppVersion::getStaticKey());
}
} // namespace

void Services::install()
{
    add<ConsoleLog>();
    add<Bell>();
    add<LinuxPlatform>();
    setBranding();
    setVersion();
}
} // namespace truss
