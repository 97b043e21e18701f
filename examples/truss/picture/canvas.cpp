// SPDX-License-Identifier: MIT
// truss: picture
#include "truss/picture/canvas.h"

#include <kel/problem.h>

#include <cairo-svg.h>

#include <array>
#include <ostream>

namespace truss
{
namespace
{
cairo_status_t writeToStream(void* stream, const unsigned char* data, unsigned length)
{
    auto& out = *static_cast<std::ostream*>(stream);
    out.write(reinterpret_cast<const char*>(data), length);
    return out ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

void throwUnless(cairo_status_t status)
{
    if (status != CAIRO_STATUS_SUCCESS)
        Problem::throwProblem(Ztring(cairo_status_to_string(status)));
}
} // namespace

Canvas::Canvas(std::ostream& out, double width, double height)
    : m_surface(cairo_svg_surface_create_for_stream(writeToStream, &out, width, height)),
      m_context(cairo_create(m_surface.get()))
{
    setColor({1, 1, 1});
    cairo_paint(m_context.get());
    cairo_set_line_cap(m_context.get(), CAIRO_LINE_CAP_ROUND);
}

void Canvas::drawLine(Point from, Point to, double width, Color color)
{
    setColor(color);
    cairo_set_line_width(m_context.get(), width);
    cairo_move_to(m_context.get(), from.x, from.y);
    cairo_line_to(m_context.get(), to.x, to.y);
    cairo_stroke(m_context.get());
}

void Canvas::drawDashedLine(Point from, Point to, double width, Color color)
{
    constexpr std::array<double, 2> dashes{4, 4};
    cairo_set_dash(m_context.get(), dashes.data(), static_cast<int>(dashes.size()), 0);
    drawLine(from, to, width, color);
    cairo_set_dash(m_context.get(), nullptr, 0, 0);
}

void Canvas::fillCircle(Point center, double radius, Color color)
{
    setColor(color);
    constexpr double fullTurn = 6.283185307179586;
    cairo_arc(m_context.get(), center.x, center.y, radius, 0, fullTurn);
    cairo_fill(m_context.get());
}

void Canvas::fillTriangle(Point a, Point b, Point c, Color color)
{
    setColor(color);
    cairo_move_to(m_context.get(), a.x, a.y);
    cairo_line_to(m_context.get(), b.x, b.y);
    cairo_line_to(m_context.get(), c.x, c.y);
    cairo_fill(m_context.get());
}

void Canvas::drawText(Point start, double height, Color color, const std::string& text)
{
    setColor(color);
    cairo_select_font_face(m_context.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(m_context.get(), height);
    cairo_move_to(m_context.get(), start.x, start.y);
    cairo_show_text(m_context.get(), text.c_str());
}

void Canvas::finish()
{
    throwUnless(cairo_status(m_context.get()));
    cairo_surface_finish(m_surface.get());
    throwUnless(cairo_surface_status(m_surface.get()));
}

void Canvas::setColor(Color color)
{
    cairo_set_source_rgb(m_context.get(), color.red, color.green, color.blue);
}
} // namespace truss
