// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/namedkeys.h>

#include <kel/bulletinkey.h>
#include <kel/emptystring_kel.h>
#include <kel/reader.h>
#include <kel/writer.h>

NamedKeys& NamedKeys::getSingleton()
{
    static NamedKeys singleton;
    return singleton;
}

unsigned NamedKeys::getKey(const std::string& name, const std::string& alias)
{
    const auto found = m_numbers.find(name);
    const unsigned number = found != m_numbers.end() ? found->second : create(name);
    if (!alias.empty())
        m_numbers.try_emplace(alias, number);
    return number;
}

const std::string& NamedKeys::getName(unsigned number) const
{
    const auto found = m_names.find(number);
    return found == m_names.end() ? Kel::emptyString : found->second;
}

bool NamedKeys::write(Writer& writer, unsigned number) const
{
    const std::string& name = getName(number);
    writer.write(static_cast<unsigned>(name.size()), name.data());
    return !name.empty();
}

bool NamedKeys::read(Reader& reader, BulletinKey& key)
{
    std::string name;
    reader.readString(name);
    if (name.empty())
        return false;
    key = BulletinKey(name);
    return true;
}

unsigned NamedKeys::create(const std::string& name)
{
    const unsigned number = BulletinKey().getNumber();
    const auto entry = m_names.emplace(number, name).first;
    try
    {
        m_numbers.emplace(name, number);
    }
    catch (...)
    {
        m_names.erase(entry);
        throw;
    }
    return number;
}
