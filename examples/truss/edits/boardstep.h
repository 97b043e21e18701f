// SPDX-License-Identifier: MIT
// truss: edits
#pragma once

#include "truss/edits/step.h"
#include "truss/model/bulletinptr.h"
#include "truss/model/entity.h"

class BulletinBoard;

namespace truss
{
/// A step that puts an entity on the model's board or takes it off.
///
/// While the entity is off the board the step owns it. It is parked, not destroyed: it keeps its key, and pointers that
/// other steps and parked entities hold to it stay good for as long as they can be used. With the step goes an entity
/// that is parked at that time; one that is on the board belongs to the board.
class BoardStep : public Step
{
protected:
    /// For an entity on the board.
    BoardStep(BulletinBoard& board, Entity& entity);
    /// For an entity that is not on the board yet.
    BoardStep(BulletinBoard& board, BulletinPtr<Entity> entity);

    void putOn();
    void takeOff();

private:
    bool isOnBoard() const;

    BulletinBoard& m_board;
    Entity& m_entity;
    BulletinPtr<Entity> m_parked; // the entity while it is off the board, otherwise null
};
} // namespace truss
