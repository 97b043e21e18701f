// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/load.h"

#include "truss/model/creator.h"
#include "truss/model/record.h"
#include "truss/text/text.h"

#include <kel/translator.h>

namespace truss
{
namespace
{
Creator<Load> s_creator("truss::Load");
} // namespace

Load::Load(Node& node, const Vector& force) : Attachment(node), m_force(force) {}

Ztring Load::getTitle() const
{
    return fill(Translator::tr("load on node '%1'"), getNodeName());
}

SerializableCreator* Load::getCreator()
{
    return &s_creator;
}

void Load::writeFields(Writer& writer)
{
    Attachment::writeFields(writer);
    Record::write(writer, m_force);
}

void Load::readFields(Reader& reader)
{
    Attachment::readFields(reader);
    Record::read(reader, m_force);
}
} // namespace truss
