// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include "truss/model/entity.h"
#include "truss/model/nodereference.h"

namespace truss
{
/// What is fastened to one node: a support or a load. It observes the node; once that was deleted, it has none.
class Attachment : public Entity
{
public:
    Node* getNode() const { return m_node.get(); }

    bool dependsOn(const Node& node) const override;
    bool fixup(Reader& reader) override;

protected:
    Attachment() = default;
    explicit Attachment(Node& node) : m_node(node) {}

    void writeFields(Writer& writer) override;
    void readFields(Reader& reader) override;

    /// Empty when the node was deleted.
    const Ztring& getNodeName() const;

private:
    NodeReference m_node;
};
} // namespace truss
