// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/nameindex.h"

#include "truss/model/namedentity.h"
#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/translator.h>

namespace truss
{
NamedEntity* NameIndex::find(const Ztring& name) const
{
    const auto found = m_entities.find(name.toUtf8());
    return found == m_entities.end() ? nullptr : found->second;
}

void NameIndex::added(Bulletin&, Bulletin& obj)
{
    auto* const entity = dynamic_cast<NamedEntity*>(&obj);
    if (entity == nullptr || m_entities.emplace(entity->getName().toUtf8(), entity).second)
        return;
    Problem::throwProblem(fill(Translator::tr("The name '%1' is already used"), entity->getName()));
}

void NameIndex::removed(BulletinBoard&, Bulletin& obj)
{
    const auto* const entity = dynamic_cast<NamedEntity*>(&obj);
    if (entity != nullptr && find(entity->getName()) == entity)
        m_entities.erase(entity->getName().toUtf8());
}
} // namespace truss
