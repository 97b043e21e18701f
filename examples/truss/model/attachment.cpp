// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/attachment.h"

#include "truss/model/node.h"

namespace truss
{
bool Attachment::dependsOn(const Node& node) const
{
    return getNode() == &node;
}

bool Attachment::fixup(Reader& reader)
{
    m_node.fix(reader);
    return true;
}

void Attachment::writeFields(Writer& writer)
{
    m_node.write(writer);
}

void Attachment::readFields(Reader& reader)
{
    m_node.read(reader);
}

const Ztring& Attachment::getNodeName() const
{
    return getNode() != nullptr ? getNode()->getName() : Ztring::emptyZtring;
}
} // namespace truss
