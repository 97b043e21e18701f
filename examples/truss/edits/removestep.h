// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include "truss/edits/boardstep.h"

namespace truss
{
/// Takes an entity off the board; undoing brings it back under the same key.
class RemoveStep : public BoardStep
{
public:
    RemoveStep(BulletinBoard& board, Entity& entity);

private:
    void apply() override { takeOff(); }
    void revert() override { putOn(); }
};
} // namespace truss
