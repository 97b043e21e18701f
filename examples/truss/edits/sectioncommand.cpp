// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/sectioncommand.h"

#include "truss/edits/sectionstep.h"
#include "truss/model/bar.h"

namespace truss
{
SectionCommand::SectionCommand(Model& model, Bar& bar, const Section& section, const Ztring& label)
    : CompositeCommand(label)
{
    Bar::checkSection(bar.getName(), section);
    add(new SectionStep(model, bar, section));
}
} // namespace truss
