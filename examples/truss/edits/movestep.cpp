// SPDX-License-Identifier: MIT
// truss: edits
#include "truss/edits/movestep.h"

#include "truss/model/model.h"
#include "truss/model/node.h"

#include <utility>

namespace truss
{
MoveStep::MoveStep(Model& model, Node& node, const Vector& position)
    : m_model(model),
      m_node(node),
      m_position(position)
{
}

void MoveStep::exchange()
{
    std::swap(m_node.m_position, m_position);
    try
    {
        m_model.announceChange(m_node);
    }
    catch (...)
    {
        std::swap(m_node.m_position, m_position);
        throw;
    }
}
} // namespace truss
