// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include <kel/addedreceiver.h>
#include <kel/receiver.h>
#include <kel/removedreceiver.h>

#include <string>
#include <unordered_map>

class Ztring;

namespace truss
{
class NamedEntity;

/// Finds the nodes and bars of a board by name. It listens to the board, so nobody has to keep it up to date.
class NameIndex : public Receiver, public AddedReceiver, public RemovedReceiver
{
public:
    /// The entity of that name, or null.
    NamedEntity* find(const Ztring& name) const;

private:
    /// A name that is taken is a Problem: only a damaged document gets here with one.
    void added(Bulletin& board, Bulletin& obj) override;
    void removed(BulletinBoard& board, Bulletin& obj) override;

    std::unordered_map<std::string, NamedEntity*> m_entities; // by name in UTF-8; not owned
};
} // namespace truss
