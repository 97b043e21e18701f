// SPDX-License-Identifier: MIT
// truss: exchange
#pragma once

#include "truss/model/bulletinptr.h"
#include "truss/model/entity.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace truss
{
class Model;
class NamedEntity;
class Node;

/// Makes new entities from words, the same in files and in scripts:
///
///     node NAME x y z
///     bar NAME NODE NODE area modulus [density]
///     support NODE h h h                            (1 = held, 0 = free)
///     load NODE Fx Fy Fz
///
/// Entities may refer to those of the model and to those that the factory has made before. Anything that must not be
/// (an unknown kind, a wrong number of fields, a bad number, an unknown or a taken name, a bar without length) is a
/// Problem, and no entity is made. The factory puts nothing on the model.
class EntityFactory
{
public:
    /// The model outlives the factory.
    explicit EntityFactory(const Model& model);

    BulletinPtr<Entity> create(const std::vector<std::string>& words);

private:
    using Words = std::vector<std::string>;
    struct Kind;
    static const Kind& getKind(const std::string& name);

    BulletinPtr<Entity> createNode(const Words& words);
    BulletinPtr<Entity> createBar(const Words& words);
    BulletinPtr<Entity> createSupport(const Words& words);
    BulletinPtr<Entity> createLoad(const Words& words);

    NamedEntity* find(const Ztring& name) const;
    Node& getNode(const std::string& word) const;
    Ztring getNewName(const std::string& word) const;

    const Model& m_model;
    std::unordered_map<std::string, NamedEntity*> m_made; // by name in UTF-8; not owned
    std::unordered_set<const Node*> m_supported;
    bool m_hasLooked = false; // for the supports of the model: only when the first is made
};
} // namespace truss
