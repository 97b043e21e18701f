// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/nameindex.h"

#include "truss/model/namedentity.h"
#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/translator.h>
#include <kel/ztring.h>

#include <functional>
#include <string_view>
#include <utility>

namespace truss
{
std::size_t NameIndex::ByName::operator()(const Ztring& name) const
{
    using View = std::basic_string_view<wxStringCharType>;
    return std::hash<View>()(View(name.wx().wx_str()));
}

std::size_t NameIndex::ByName::operator()(const NamedEntity* entity) const
{
    return (*this)(entity->getName());
}

bool NameIndex::ByName::operator()(const NamedEntity* left, const NamedEntity* right) const
{
    return left->getName() == right->getName();
}

bool NameIndex::ByName::operator()(const Ztring& name, const NamedEntity* entity) const
{
    return name == entity->getName();
}

NamedEntity* NameIndex::find(const Ztring& name) const
{
    const auto found = m_entities.find(name);
    return found == m_entities.end() ? nullptr : *found;
}

void NameIndex::added(Bulletin&, Bulletin& obj)
{
    auto* const entity = dynamic_cast<NamedEntity*>(&obj);
    if (entity == nullptr)
        return;
    if (!entity->m_place.empty())
    {
        Entities::insert_return_type placed = m_entities.insert(std::move(entity->m_place));
        entity->m_place = std::move(placed.node); // of a name that is taken
        if (placed.inserted)
            return;
    }
    else if (*m_entities.insert(entity).first == entity)
        return;
    Problem::throwProblem(fill(Translator::tr("The name '%1' is already used"), entity->getName()));
}

void NameIndex::removed(BulletinBoard&, Bulletin& obj)
{
    auto* const entity = dynamic_cast<NamedEntity*>(&obj);
    if (entity == nullptr)
        return;
    const auto found = m_entities.find(entity->getName());
    if (found != m_entities.end() && *found == entity)
        entity->m_place = m_entities.extract(found);
}
} // namespace truss
