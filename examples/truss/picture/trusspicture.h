// SPDX-License-Identifier: MIT
// truss: picture
#pragma once

#include "truss/analysis/structure.h"
#include "truss/picture/projection.h"

#include <iosfwd>

namespace truss
{
struct Response;

/// Draws a truss as SVG, in pieces so that a large one can be interrupted. Tension is blue, compression is red; the
/// deflected shape is magnified by a round factor that stands below the drawing.
///
///     TrussPicture picture(out, structure, response);
///     while (picture.draw(1000))
///         ;
class TrussPicture
{
public:
    /// The response may be null: then only the structure is drawn. All arguments outlive the picture.
    TrussPicture(std::ostream& out, const Structure& structure, const Response* response);

    /// Draws up to `count` bars, and all the rest after the last one; @return whether there is more to draw.
    bool draw(std::size_t count);

    /// The part of the bars that is drawn, 0 to 100.
    int getPercent() const;

private:
    void drawMember(std::size_t index);
    void drawJoints();
    void drawSupport(const Structure::Joint& joint);
    void drawLoad(const Structure::Joint& joint);
    void drawCaption();
    double chooseMagnification() const;
    double findLargestForce() const;
    Eigen::Vector3d getDeflected(std::size_t joint) const;

    const Structure& m_structure;
    const Response* m_response;
    Projection m_projection;
    Canvas m_canvas;
    double m_magnification;
    double m_largestForce; // of the loads on one joint
    std::size_t m_drawn = 0;
};
} // namespace truss
