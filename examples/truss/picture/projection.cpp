// SPDX-License-Identifier: MIT
// truss: picture
#include "truss/picture/projection.h"

#include <Eigen/Geometry>

#include <algorithm>

namespace truss
{
Projection::Projection(const Structure& structure, double size, double margin) : m_margin(margin)
{
    Eigen::AlignedBox3d box;
    for (const auto& joint : structure.getJoints())
        box.extend(joint.position);
    if (box.isEmpty())
        box.extend(Eigen::Vector3d::Zero());
    m_isPlane = (box.sizes().array() == 0).any();
    m_view = chooseView(box.sizes());

    Eigen::AlignedBox2d seen;
    for (const auto& joint : structure.getJoints())
        seen.extend(m_view * joint.position);
    if (seen.isEmpty())
        seen.extend(Eigen::Vector2d::Zero());
    m_lower = seen.min();
    if (seen.sizes().maxCoeff() > 0)
        m_extent = seen.sizes().maxCoeff();
    m_scale = size / m_extent;
    m_pageWidth = seen.sizes().x() * m_scale + 2 * margin;
    m_pageHeight = seen.sizes().y() * m_scale + 2 * margin;
}

Canvas::Point Projection::operator()(const Eigen::Vector3d& position) const
{
    const Eigen::Vector2d seen = (m_view * position - m_lower) * m_scale;
    return {m_margin + seen.x(), m_pageHeight - m_margin - seen.y()};
}

Projection::View Projection::chooseView(const Eigen::Vector3d& size)
{
    View view;
    if (size.z() == 0)
        view << 1, 0, 0, 0, 1, 0;
    else if (size.y() == 0)
        view << 1, 0, 0, 0, 0, 1;
    else if (size.x() == 0)
        view << 0, 1, 0, 0, 0, 1;
    else
        view << 0.87, -0.5, 0, 0.25, 0.43, 0.87;
    return view;
}
} // namespace truss
