// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include "truss/edits/compositecommand.h"

namespace truss
{
class Bar;
class Model;
struct Section;

/// Changes the section of a bar. One that no bar can have is a Problem.
class SectionCommand : public CompositeCommand
{
public:
    SectionCommand(Model& model, Bar& bar, const Section& section, const Ztring& label);
};
} // namespace truss
