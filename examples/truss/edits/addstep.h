// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include "truss/edits/boardstep.h"

namespace truss
{
/// Puts a new entity on the board.
class AddStep : public BoardStep
{
public:
    AddStep(BulletinBoard& board, BulletinPtr<Entity> entity);

private:
    void apply() override { putOn(); }
    void revert() override { takeOff(); }
};
} // namespace truss
