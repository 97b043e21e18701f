// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/versions.h>

#include <kel/appversion.h>
#include <kel/kelversion.h>
#include <kel/reader.h>
#include <kel/translator.h>
#include <kel/version.h>
#include <kel/writer.h>
#include <kel/zassert.h>
#include <kel/ztring.h>

#include <vector>

namespace
{
Version* find(const Versions& versions, const BulletinKey& key)
{
    return dynamic_cast<Version*>(versions.getPtr(key));
}

void checkNotNewer(const Version& recorded, Reader& reader)
{
    const Version* const running = find(Versions::getSingleton(), recorded.getKey());
    if (running && *running < recorded)
        reader.throwError(Translator::tr("File written by newer version.  Update to latest version using "
                                         "Help->Check for Updates"));
}
} // namespace

Versions::Versions() : BulletinBoard(getStaticKey()) {}

Versions::~Versions() = default;

const BulletinKey& Versions::getStaticKey()
{
    static const BulletinKey s_key("Versions");
    return s_key;
}

Versions& Versions::getSingleton()
{
    static Versions s_singleton;
    return s_singleton;
}

void Versions::write(Writer& writer)
{
    std::vector<Version*> versions;
    for (const auto& [number, bulletin] : *this)
    {
        // A board that is in use holds its use count, too.
        if (auto* const version = dynamic_cast<Version*>(bulletin))
            versions.push_back(version);
    }
    writer.write(static_cast<unsigned>(versions.size()));
    for (Version* version : versions)
        version->write(writer);
}

void Versions::read(Reader& reader)
{
    unsigned count = 0;
    reader.read(count);
    for (unsigned i = 0; i < count; ++i)
    {
        auto version = std::make_unique<Version>();
        version->read(reader);
        checkNotNewer(adopt(std::move(version)), reader);
    }
    if (!hasKey(KelVersion::getStaticKey()))
        addKelVersion();
}

void Versions::addKelVersion()
{
    const BulletinKey& key = KelVersion::getStaticKey();
    KEL_ASSERT(!hasKey(key), "!hasKey(kelVersionKey)");
    const Version* const application = find(*this, AppVersion::getStaticKey());
    auto version = std::make_unique<Version>(0, 0, 0, key);
    if (application)
        *version = *application;
    adopt(std::move(version));
}

bool Versions::hasModules() const
{
    return size() > 1;
}
