// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/support.h"

#include "truss/model/creator.h"
#include "truss/text/text.h"

#include <kel/reader.h>
#include <kel/translator.h>
#include <kel/writer.h>

namespace truss
{
namespace
{
Creator<Support> s_creator("truss::Support");
} // namespace

Support::Support(Node& node, const Held& held) : Attachment(node), m_held(held) {}

Ztring Support::getTitle() const
{
    return fill(Translator::tr("support of node '%1'"), getNodeName());
}

SerializableCreator* Support::getCreator()
{
    return &s_creator;
}

void Support::writeFields(Writer& writer)
{
    Attachment::writeFields(writer);
    for (const bool held : m_held)
        writer.write(held);
}

void Support::readFields(Reader& reader)
{
    Attachment::readFields(reader);
    for (bool& held : m_held)
        reader.read(held);
}
} // namespace truss
