// SPDX-License-Identifier: MIT
// truss: picture
#pragma once

#include "truss/analysis/structure.h"
#include "truss/picture/canvas.h"

#include <Eigen/Core>

namespace truss
{
/// Places a structure on a page: a plane one seen at right angles to its plane, a space one seen slantwise from above,
/// with z upwards.
class Projection
{
public:
    /// Fits the structure into a square between the margins. All lengths in points.
    Projection(const Structure& structure, double size, double margin);

    Canvas::Point operator()(const Eigen::Vector3d& position) const;

    /// Of the page that takes the structure and the margins.
    double getPageWidth() const { return m_pageWidth; }
    double getPageHeight() const { return m_pageHeight; }
    /// Whether the structure lies in a plane of two axes.
    bool isPlane() const { return m_isPlane; }
    /// The largest extent of the structure on the page, in the structure's own units of length; not zero.
    double getExtent() const { return m_extent; }

private:
    using View = Eigen::Matrix<double, 2, 3>;
    static View chooseView(const Eigen::Vector3d& size);

    View m_view;
    Eigen::Vector2d m_lower; // corner of the structure as it is seen
    double m_scale = 1;      // points for each unit of length
    double m_extent = 1;
    double m_margin;
    double m_pageWidth;
    double m_pageHeight;
    bool m_isPlane;
};
} // namespace truss
