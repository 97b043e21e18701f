// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include "truss/model/attachment.h"

#include <array>

namespace truss
{
/// Holds a node in some of the three directions.
class Support : public Attachment
{
public:
    using Held = std::array<bool, 3>;

    Support() = default;
    Support(Node& node, const Held& held);

    const Held& getHeld() const { return m_held; }

    Ztring getTitle() const override;
    SerializableCreator* getCreator() override;

private:
    void writeFields(Writer& writer) override;
    void readFields(Reader& reader) override;

    Held m_held{};
};
} // namespace truss
