// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/addstep.h"

#include <utility>

namespace truss
{
AddStep::AddStep(BulletinBoard& board, BulletinPtr<Entity> entity) : BoardStep(board, std::move(entity)) {}
} // namespace truss
