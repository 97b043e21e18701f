// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/addcommand.h"

#include "truss/edits/addstep.h"
#include "truss/model/model.h"
#include "truss/text/text.h"

#include <kel/translator.h>

#include <utility>

namespace truss
{
AddCommand::AddCommand(Model& model, BulletinPtr<Entity> entity)
    : CompositeCommand(fill(Translator::tr("Add %1"), entity->getTitle()))
{
    add(new AddStep(model, std::move(entity)));
}
} // namespace truss
