// SPDX-License-Identifier: MIT
// truss: picture
#pragma once

#include <cairo.h>

#include <iosfwd>
#include <memory>
#include <string>

namespace truss
{
/// A page that is drawn with cairo and goes to a stream as SVG.
class Canvas
{
public:
    struct Color
    {
        double red, green, blue;
    };

    struct Point
    {
        double x, y; ///< in points from the upper left corner
    };

    /// The page has a white ground. The stream outlives the canvas.
    Canvas(std::ostream& out, double width, double height);

    void drawLine(Point from, Point to, double width, Color color);
    void drawDashedLine(Point from, Point to, double width, Color color);
    void fillCircle(Point center, double radius, Color color);
    void fillTriangle(Point a, Point b, Point c, Color color);
    /// The text begins at the point, on its base line. Height in points; text in UTF-8.
    void drawText(Point start, double height, Color color, const std::string& text);

    /// Sends the rest to the stream; a Problem when the drawing has failed. To be called last.
    void finish();

private:
    void setColor(Color color);

    struct Deleter
    {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
        void operator()(cairo_t* context) const { cairo_destroy(context); }
    };

    std::unique_ptr<cairo_surface_t, Deleter> m_surface;
    std::unique_ptr<cairo_t, Deleter> m_context;
};
} // namespace truss
