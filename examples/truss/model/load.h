// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include "truss/model/attachment.h"
#include "truss/model/vector.h"

namespace truss
{
/// A force on a node. Several loads on one node add up.
class Load : public Attachment
{
public:
    Load() = default;
    Load(Node& node, const Vector& force);

    const Vector& getForce() const { return m_force; }

    Ztring getTitle() const override;
    SerializableCreator* getCreator() override;

private:
    void writeFields(Writer& writer) override;
    void readFields(Reader& reader) override;

    Vector m_force{};
};
} // namespace truss
