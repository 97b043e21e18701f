// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/serializablecreators.h>

#include <kel/serializablecreator.h>
#include <kel/zassert.h>

#include <memory>

SerializableCreators& SerializableCreators::getSingleton()
{
    static SerializableCreators s_singleton;
    return s_singleton;
}

void SerializableCreators::add(const std::string& name, SerializableCreator* creator)
{
    if (m_rollback)
        m_rollback->add(name);
    m_creatorsByName[name] = creator;
}

SerializableCreator* SerializableCreators::getCreator(const std::string& name) const
{
    const auto found = m_creatorsByName.find(name);
    return found == m_creatorsByName.end() ? nullptr : found->second;
}

void SerializableCreators::set(Rollback* rollback)
{
    KEL_ASSERT(rollback, "valid(rollback)");
    m_rollback = rollback;
}

void SerializableCreators::remove(const Array<std::string>& names)
{
    m_rollback = nullptr;
    for (const std::string& name : names)
        removeOne(name);
}

void SerializableCreators::removeOne(const std::string& name)
{
    // A module that registered one name twice is listed twice.
    const auto found = m_creatorsByName.find(name);
    if (found == m_creatorsByName.end())
        return;
    const std::unique_ptr<SerializableCreator> creator(found->second);
    // Under all its names, which it may have several of.
    std::erase_if(m_creatorsByName, [&](const auto& entry) { return entry.second == creator.get(); });
}

SerializableCreators::Rollback::Rollback(bool enable)
{
    if (!enable)
        return;
    reserve(10);
    getSingleton().set(this);
}

SerializableCreators::Rollback::~Rollback()
{
    getSingleton().remove(*this);
}

void SerializableCreators::Rollback::add(const std::string& name)
{
    push_back(name);
}
