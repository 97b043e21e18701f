// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletin.h>
#include <kel/kelapi.h>

#include <cstdint>
#include <string>

class Reader;
class Writer;

/// The version of one component, which is named by the bulletin's key.
class KEL_API Version : public Bulletin
{
public:
    /// 0.0.0 under the key "Version".
    Version();
    Version(unsigned major, unsigned minor, unsigned patch, const BulletinKey& key);
    Version(const Version& other);
    /// Copies the three numbers and leaves the key.
    Version& operator=(const Version& other);
    ~Version() override;

    /// The key "Version".
    static const BulletinKey& getStaticKey();

    /// The version of a component of this process, owned by Versions::getSingleton(). The first registration wins:
    /// where there is one, it is returned as it is, whatever the numbers given.
    static Version* create(unsigned major, unsigned minor, unsigned patch, const BulletinKey& key);

    /// The version of a component that is recorded in the reader's stream; 0.0.0 where there is none, never null. Lives
    /// as long as the reader. Not to be changed: the 0.0.0 is one that all share.
    static Version* getFrom(Reader& reader, const BulletinKey& key);

    /// The key, then the three numbers. Written inline, not as an object of its own.
    virtual void write(Writer& writer);
    /// Takes the key and the three numbers from the stream, with the failures of Reader::checkValid.
    virtual void read(Reader& reader);

    unsigned getMajor() const { return m_major; }
    unsigned getMinor() const { return m_minor; }
    unsigned getPatch() const { return m_patch; }

    /// Comparisons look at the three numbers alone, not at the key.
    bool operator==(const Version& other) const;
    bool operator!=(const Version& other) const;
    bool operator<(const Version& other) const;

    /// Appends the numbers, such as "5.1.3".
    void appendVersion(std::string& out) const;

    /// Appends name and numbers for a web request, such as "KelVersion:5.1.3;".
    void appendAsUrlArg(std::string& out) const;
    /// Appends any other argument of that form, "name:value;".
    static void appendAsUrlArg(std::string& out, const std::string& name, const std::string& value);

private:
    std::uint32_t m_major = 0;
    std::uint32_t m_minor = 0;
    std::uint32_t m_patch = 0;
};
