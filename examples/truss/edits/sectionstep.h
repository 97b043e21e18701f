// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include "truss/edits/step.h"
#include "truss/model/section.h"

namespace truss
{
class Bar;
class Model;

/// Gives a bar another section.
class SectionStep : public Step
{
public:
    SectionStep(Model& model, Bar& bar, const Section& section);

private:
    void apply() override { exchange(); }
    void revert() override { exchange(); }
    void exchange();

    Model& m_model;
    Bar& m_bar;
    Section m_section; // the one that the bar does not have now
};
} // namespace truss
