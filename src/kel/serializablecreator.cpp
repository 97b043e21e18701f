// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/serializablecreator.h>

#include <kel/serializablecreators.h>

SerializableCreator::SerializableCreator(const std::string& name) : m_name(name)
{
    SerializableCreators::getSingleton().add(m_name, this);
}

SerializableCreator::~SerializableCreator() = default;
