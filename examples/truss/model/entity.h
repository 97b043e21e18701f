// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include <kel/bulletin.h>
#include <kel/serializable.h>
#include <kel/ztring.h>

namespace truss
{
class Node;

/// Anything that the model holds: a bulletin that can be stored.
///
/// Only the steps of commands change an entity, so the setters of its subclasses are open to those steps alone.
class Entity : public Bulletin, public Serializable
{
public:
    /// False: the references of a copy would lead to the originals.
    bool canClone() const override { return false; }

    /// What labels and messages call it, for example "bar 'b1'".
    virtual Ztring getTitle() const = 0;

    /// Whether it cannot stay when the node is deleted.
    virtual bool dependsOn(const Node& node) const;

    void write(Writer& writer) final;
    /// Reads the fields and then the end of the record: what stands between the two is a damaged record.
    void read(Reader& reader) final;

private:
    virtual void writeFields(Writer& writer) = 0;
    /// Leaves references unresolved, and fails with a Problem where a value is not allowed.
    virtual void readFields(Reader& reader) = 0;
};
} // namespace truss
