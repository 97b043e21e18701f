// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/nodereference.h"

#include "truss/model/node.h"

#include <kel/reader.h>
#include <kel/translator.h>
#include <kel/writer.h>

#include <utility>

namespace truss
{
void NodeReference::set(Node* node)
{
    if (m_node != nullptr)
        unobserve(*std::exchange(m_node, nullptr));
    if (node != nullptr)
        observe(*node);
    m_node = node;
}

void NodeReference::write(Writer& writer) const
{
    writer.writeObj(m_node);
}

void NodeReference::read(Reader& reader)
{
    reader.read(m_id);
}

void NodeReference::fix(Reader& reader)
{
    Bulletin* found = std::exchange(m_id, nullptr);
    reader.fix(found);
    set(dynamic_cast<Node*>(found));
    if (m_node == nullptr)
        reader.throwError(Translator::tr("A reference does not lead to a node"));
}

void NodeReference::deleted(Bulletin&)
{
    m_node = nullptr;
}
} // namespace truss
