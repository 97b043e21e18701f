// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include "truss/model/nameindex.h"

#include <kel/bulletinboard.h>
#include <kel/serializable.h>

namespace truss
{
class Bar;
class Entity;
class Node;

/// The document: a board of nodes, bars, supports and loads, and the root of what is saved.
///
/// It is edited by commands alone. Observers of the model hear of every edit: `added` and `removed` as of any board,
/// `changed` with the changed entity as "how".
class Model : public BulletinBoard, public Serializable
{
public:
    Model();

    /// The node or bar of that name, or null.
    NamedEntity* find(const Ztring& name) const { return m_names.find(name); }
    /// The same, but anything else under the name, or nothing, is a Problem.
    NamedEntity& getNamed(const Ztring& name) const;
    Node& getNode(const Ztring& name) const;
    Bar& getBar(const Ztring& name) const;

    /// Calls the function with each entity of one class, in the order in which they were made.
    template <class T, class Function>
    void forEach(const Function& function) const;

    /// For the steps of commands: tells the observers of the entity and those of the model that it has changed.
    void announceChange(Entity& entity);

    bool canClone() const override { return false; }
    SerializableCreator* getCreator() override;
    void write(Writer& writer) override;
    void read(Reader& reader) override;
    bool fixup(Reader& reader) override;

private:
    NameIndex m_names;
    unsigned m_expectedSize = 0; // of the document being read
};

template <class T, class Function>
void Model::forEach(const Function& function) const
{
    for (const auto& [number, bulletin] : *this)
    {
        if (auto* const entity = dynamic_cast<T*>(bulletin))
            function(*entity);
    }
}
} // namespace truss
