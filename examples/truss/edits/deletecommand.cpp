// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/deletecommand.h"

#include "truss/edits/removestep.h"
#include "truss/model/model.h"
#include "truss/model/node.h"
#include "truss/text/text.h"

#include <kel/translator.h>

namespace truss
{
DeleteCommand::DeleteCommand(Model& model, NamedEntity& entity)
    : CompositeCommand(fill(Translator::tr("Delete %1"), entity.getTitle()))
{
    // Dependents go before their node and, undone in reverse, come back after it.
    if (const auto* const node = dynamic_cast<Node*>(&entity))
    {
        model.forEach<Entity>(
            [&](Entity& dependent)
            {
                if (dependent.dependsOn(*node))
                    add(new RemoveStep(model, dependent));
            });
    }
    add(new RemoveStep(model, entity));
}
} // namespace truss
