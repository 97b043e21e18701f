// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/node.h"

#include "truss/model/creator.h"
#include "truss/model/record.h"
#include "truss/text/text.h"

#include <kel/translator.h>

namespace truss
{
namespace
{
Creator<Node> s_creator("truss::Node");
} // namespace

Node::Node(const Ztring& name, const Vector& position) : NamedEntity(name), m_position(position) {}

Ztring Node::getTitle() const
{
    return fill(Translator::tr("node '%1'"), getName());
}

SerializableCreator* Node::getCreator()
{
    return &s_creator;
}

void Node::writeFields(Writer& writer)
{
    NamedEntity::writeFields(writer);
    Record::write(writer, m_position);
}

void Node::readFields(Reader& reader)
{
    NamedEntity::readFields(reader);
    Record::read(reader, m_position);
}
} // namespace truss
