// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include <kel/addedreceiver.h>
#include <kel/receiver.h>
#include <kel/removedreceiver.h>

#include <cstddef>
#include <unordered_set>

class Ztring;

namespace truss
{
class NamedEntity;

/// Finds the nodes and bars of a board by name. It listens to the board, so nobody has to keep it up to date.
class NameIndex : public Receiver, public AddedReceiver, public RemovedReceiver
{
    /// Lets the entities be looked up by their names without making copies of those: a removal must not need memory.
    struct ByName
    {
        using is_transparent = void;

        std::size_t operator()(const Ztring& name) const;
        std::size_t operator()(const NamedEntity* entity) const;
        bool operator()(const NamedEntity* left, const NamedEntity* right) const;
        bool operator()(const Ztring& name, const NamedEntity* entity) const;
    };
    using Entities = std::unordered_set<NamedEntity*, ByName, ByName>;

public:
    /// The place of an entity that was removed. It keeps it, so that to take back a removal needs no memory either.
    using Place = Entities::node_type;

    /// The entity of that name, or null.
    NamedEntity* find(const Ztring& name) const;

private:
    /// A name that is taken is a Problem: only a damaged document gets here with one.
    void added(Bulletin& board, Bulletin& obj) override;
    void removed(BulletinBoard& board, Bulletin& obj) override;

    Entities m_entities; // not owned
};
} // namespace truss
