// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/movecommand.h"

#include "truss/edits/movestep.h"
#include "truss/model/bar.h"
#include "truss/model/model.h"
#include "truss/model/node.h"
#include "truss/text/text.h"

#include <kel/translator.h>

namespace truss
{
namespace
{
void checkBars(const Model& model, const Node& moved, const Vector& position)
{
    const auto positionOf = [&](const Node& node) { return &node == &moved ? position : node.getPosition(); };
    model.forEach<Bar>(
        [&](const Bar& bar)
        {
            if (bar.dependsOn(moved))
                Bar::checkLength(bar.getName(), positionOf(*bar.getFrom()), positionOf(*bar.getTo()));
        });
}
} // namespace

MoveCommand::MoveCommand(Model& model, Node& node, const Vector& position)
    : CompositeCommand(fill(Translator::tr("Move %1"), node.getTitle()))
{
    checkBars(model, node, position);
    add(new MoveStep(model, node, position));
}
} // namespace truss
