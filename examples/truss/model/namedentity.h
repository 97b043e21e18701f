// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include "truss/model/entity.h"
#include "truss/model/nameindex.h"

namespace truss
{
/// An entity that the user calls by a name. Nodes and bars share one set of names, so that a name alone says which
/// one is meant.
class NamedEntity : public Entity
{
public:
    const Ztring& getName() const { return m_name; }

    /// Fails with a Problem unless the text can be a name: not empty (which a text that is not UTF-8 turns into), and
    /// without control characters, which would break the lines of files and messages.
    static void checkName(const Ztring& name);

protected:
    NamedEntity() = default;
    explicit NamedEntity(const Ztring& name) : m_name(name) {}

    void writeFields(Writer& writer) override;
    void readFields(Reader& reader) override;

private:
    friend class NameIndex;

    Ztring m_name;
    NameIndex::Place m_place; // empty while the index has the entity
};
} // namespace truss
