// SPDX-License-Identifier: MIT
// truss: picture
#pragma once

#include "truss/picture/canvas.h"

#include <kel/ztring.h>

#include <iosfwd>
#include <vector>

namespace truss
{
/// Draws one curve over two axes with round numbers, as SVG.
class CurvePlot
{
public:
    struct Point
    {
        double x, y;
    };

    CurvePlot(const Ztring& xTitle, const Ztring& yTitle) : m_xTitle(xTitle), m_yTitle(yTitle) {}

    /// Draws the points, of which there is at least one, joined in their order.
    void draw(std::ostream& out, const std::vector<Point>& points) const;

private:
    Ztring m_xTitle;
    Ztring m_yTitle;
};
} // namespace truss
