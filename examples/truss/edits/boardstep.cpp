// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/boardstep.h"

#include <kel/bulletinboard.h>
#include <kel/zassert.h>

#include <utility>

namespace truss
{
BoardStep::BoardStep(BulletinBoard& board, Entity& entity) : m_board(board), m_entity(entity) {}

BoardStep::BoardStep(BulletinBoard& board, BulletinPtr<Entity> entity)
    : m_board(board),
      m_entity(*entity),
      m_parked(std::move(entity))
{
}

void BoardStep::putOn()
{
    try
    {
        m_board.addIgnoreKey(m_entity, m_entity.getKey()); // which leaves it to this step unless it got there
    }
    catch (...)
    {
        if (isOnBoard()) // an observer threw
            m_board.remove(m_entity);
        throw;
    }
    static_cast<void>(m_parked.release()); // the board owns it now
}

void BoardStep::takeOff()
{
    KEL_ASSERT(isOnBoard(), "isOnBoard()");
    m_parked.reset(&m_entity);
    try
    {
        m_board.remove(m_entity);
    }
    catch (...)
    {
        putOn(); // an observer threw when the entity was off the board
        throw;
    }
}

bool BoardStep::isOnBoard() const
{
    return m_board.getPtr(m_entity.getKey()) == &m_entity;
}
} // namespace truss
