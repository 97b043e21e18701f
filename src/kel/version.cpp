// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/version.h>

#include <kel/reader.h>
#include <kel/versions.h>
#include <kel/writer.h>

#include <tuple>

Version::Version() : Bulletin(getStaticKey()) {}

Version::Version(unsigned major, unsigned minor, unsigned patch, const BulletinKey& key)
    : Bulletin(key),
      m_major(major),
      m_minor(minor),
      m_patch(patch)
{
}

Version::Version(const Version& other) = default;

Version& Version::operator=(const Version& other) = default;

Version::~Version() = default;

const BulletinKey& Version::getStaticKey()
{
    static const BulletinKey s_key("Version");
    return s_key;
}

Version* Version::create(unsigned major, unsigned minor, unsigned patch, const BulletinKey& key)
{
    Versions& versions = Versions::getSingleton();
    if (auto* const known = dynamic_cast<Version*>(versions.getPtr(key)))
        return known;
    return &versions.adopt(std::make_unique<Version>(major, minor, patch, key));
}

Version* Version::getFrom(Reader& reader, const BulletinKey& key)
{
    static Version s_null;
    const auto* const versions = reader.getPtr<Versions>();
    auto* const version = versions ? dynamic_cast<Version*>(versions->getPtr(key)) : nullptr;
    return version ? version : &s_null;
}

void Version::write(Writer& writer)
{
    getKey().write(writer);
    writer.write(m_major).write(m_minor).write(m_patch);
}

void Version::read(Reader& reader)
{
    BulletinKey key(getKey());
    key.read(reader);
    setKey(key);
    reader.read(m_major).read(m_minor).read(m_patch);
}

bool Version::operator==(const Version& other) const
{
    return m_major == other.m_major && m_minor == other.m_minor && m_patch == other.m_patch;
}

bool Version::operator!=(const Version& other) const
{
    return !(*this == other);
}

bool Version::operator<(const Version& other) const
{
    return std::tie(m_major, m_minor, m_patch) < std::tie(other.m_major, other.m_minor, other.m_patch);
}

void Version::appendVersion(std::string& out) const
{
    out += std::to_string(m_major) + '.' + std::to_string(m_minor) + '.' + std::to_string(m_patch);
}

void Version::appendAsUrlArg(std::string& out) const
{
    std::string numbers;
    appendVersion(numbers);
    appendAsUrlArg(out, getKey().getName(), numbers);
}

void Version::appendAsUrlArg(std::string& out, const std::string& name, const std::string& value)
{
    out += name + ':' + value + ';';
}
