// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include "truss/model/namedentity.h"
#include "truss/model/vector.h"

namespace truss
{
/// A joint of the truss. Bars, supports and loads refer to it.
class Node : public NamedEntity
{
public:
    Node() = default;
    Node(const Ztring& name, const Vector& position);

    const Vector& getPosition() const { return m_position; }

    Ztring getTitle() const override;
    SerializableCreator* getCreator() override;

private:
    friend class MoveStep;

    void writeFields(Writer& writer) override;
    void readFields(Reader& reader) override;

    Vector m_position{};
};
} // namespace truss
