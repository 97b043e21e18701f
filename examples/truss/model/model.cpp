// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/model.h"

#include "truss/model/bar.h"
#include "truss/model/creator.h"
#include "truss/model/node.h"
#include "truss/model/record.h"
#include "truss/text/text.h"

#include <kel/changednotifier.h>
#include <kel/problem.h>
#include <kel/reader.h>
#include <kel/translator.h>
#include <kel/writer.h>

#include <algorithm>

namespace truss
{
namespace
{
Creator<Model> s_creator("truss::Model");

template <class T>
T& require(T* entity, const Ztring& name, const Ztring& message)
{
    if (entity == nullptr)
        Problem::throwProblem(fill(message, name));
    return *entity;
}

bool isEntity(const BulletinBoard::value_type& entry)
{
    return dynamic_cast<Entity*>(entry.second) != nullptr;
}
} // namespace

Model::Model()
{
    m_names.observe(*this);
}

NamedEntity& Model::getNamed(const Ztring& name) const
{
    return require(find(name), name, Translator::tr("There is no node or bar named '%1'"));
}

Node& Model::getNode(const Ztring& name) const
{
    return require(dynamic_cast<Node*>(find(name)), name, Translator::tr("There is no node named '%1'"));
}

Bar& Model::getBar(const Ztring& name) const
{
    return require(dynamic_cast<Bar*>(find(name)), name, Translator::tr("There is no bar named '%1'"));
}

void Model::announceChange(Entity& entity)
{
    entity.notifyChanged();
    ChangedNotifier notifier(*this, entity);
    notifyObservers(notifier);
}

SerializableCreator* Model::getCreator()
{
    return &s_creator;
}

void Model::write(Writer& writer)
{
    writer.write(static_cast<unsigned>(size()));
    writer.writeBulletins(*this);
}

void Model::read(Reader& reader)
{
    reader.read(m_expectedSize);
    reader.readBulletins(*this);
    Record::readEnd(reader);
}

bool Model::fixup(Reader& reader)
{
    reader.fixBulletins(*this);
    // The reader passes over objects of classes it does not know; a document that would silently lose some is refused.
    if (size() != m_expectedSize)
        reader.throwError(Translator::tr("The file holds objects that this program does not know"));
    if (!std::all_of(begin(), end(), isEntity))
        reader.throwError(Translator::tr("The file holds objects that do not belong to its truss"));
    return true;
}
} // namespace truss
