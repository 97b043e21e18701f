// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/entity.h"

#include "truss/model/record.h"

namespace truss
{
bool Entity::dependsOn(const Node&) const
{
    return false;
}

void Entity::write(Writer& writer)
{
    writeFields(writer);
}

void Entity::read(Reader& reader)
{
    readFields(reader);
    Record::readEnd(reader);
}
} // namespace truss
