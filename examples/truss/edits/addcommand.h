// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include "truss/edits/compositecommand.h"
#include "truss/model/bulletinptr.h"
#include "truss/model/entity.h"

namespace truss
{
class Model;

/// Adds one entity, made and checked by an EntityFactory.
class AddCommand : public CompositeCommand
{
public:
    AddCommand(Model& model, BulletinPtr<Entity> entity);
};
} // namespace truss
