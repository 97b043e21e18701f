// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include "truss/model/namedentity.h"
#include "truss/model/nodereference.h"
#include "truss/model/section.h"
#include "truss/model/vector.h"

namespace truss
{
/// A straight bar, pin-jointed to two nodes. It observes them; once one was deleted, its end is null.
class Bar : public NamedEntity
{
public:
    Bar() = default;
    Bar(const Ztring& name, Node& from, Node& to, const Section& section);

    Node* getFrom() const { return m_from.get(); }
    Node* getTo() const { return m_to.get(); }
    const Section& getSection() const { return m_section; }

    /// Fail with a Problem that names the bar when a bar like this must not be.
    static void checkLength(const Ztring& name, const Vector& from, const Vector& to);
    static void checkSection(const Ztring& name, const Section& section);

    Ztring getTitle() const override;
    bool dependsOn(const Node& node) const override;
    SerializableCreator* getCreator() override;
    bool fixup(Reader& reader) override;

private:
    friend class SectionStep;

    void writeFields(Writer& writer) override;
    void readFields(Reader& reader) override;

    NodeReference m_from;
    NodeReference m_to;
    Section m_section;
};
} // namespace truss
