// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/kelapi.h>

#include <string>
#include <unordered_map>

class BulletinKey;
class Reader;
class Writer;

/// The names of keys: name to number and number to name, for the whole process. Nothing is ever taken out.
class KEL_API NamedKeys
{
public:
    NamedKeys() = default;
    NamedKeys(const NamedKeys&) = delete;
    NamedKeys& operator=(const NamedKeys&) = delete;
    ~NamedKeys() = default;

    /// The registry that all keys use. Made on first use and destroyed at exit.
    static NamedKeys& getSingleton();

    /// The number of a name, created if the name is new. An alias that is not empty and not known yet becomes a second
    /// name of that number, be `name` new or not. The first registration wins: a known name keeps its number, whatever
    /// comes later.
    unsigned getKey(const std::string& name, const std::string& alias);

    /// The name that the number was created for, never an alias; empty when there is none. Lives as long as the
    /// registry.
    const std::string& getName(unsigned number) const;

    /// Writes the name of a number as a counted string, the empty one when it has no name.
    /// @return whether there was a name.
    bool write(Writer& writer, unsigned number) const;
    /// Reads a counted string. Unless it is empty, `key` becomes the key of that name.
    /// @return whether there was a name.
    bool read(Reader& reader, BulletinKey& key);

private:
    unsigned create(const std::string& name);

    std::unordered_map<std::string, unsigned> m_numbers; ///< by primary name and by alias
    std::unordered_map<unsigned, std::string> m_names;   ///< primary names only
};
