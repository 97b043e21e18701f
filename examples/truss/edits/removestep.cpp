// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/removestep.h"

namespace truss
{
RemoveStep::RemoveStep(BulletinBoard& board, Entity& entity) : BoardStep(board, entity) {}
} // namespace truss
