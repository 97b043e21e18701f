// SPDX-License-Identifier: MIT
// truss: picture
#include "truss/picture/curveplot.h"

#include "truss/picture/axis.h"
#include "truss/text/text.h"

#include <algorithm>

namespace truss
{
namespace
{
// In points.
constexpr double width = 640;
constexpr double height = 420;
constexpr double margin = 70;
constexpr double textHeight = 12;

constexpr Canvas::Color black{0, 0, 0};
constexpr Canvas::Color grey{0.85, 0.85, 0.85};
constexpr Canvas::Color blue{0.1, 0.3, 0.8};

using Points = std::vector<CurvePlot::Point>;

Axis createAxis(const Points& points, double CurvePlot::Point::*component, double begin, double end)
{
    const auto [least, most] = std::minmax_element(points.begin(), points.end(),
                                                   [component](const CurvePlot::Point& a, const CurvePlot::Point& b)
                                                   { return a.*component < b.*component; });
    return Axis((*least).*component, (*most).*component, begin, end);
}

void drawMarks(Canvas& canvas, const Axis& x, const Axis& y)
{
    for (const double mark : x.getMarks())
    {
        const double place = x.toPage(mark);
        canvas.drawLine({place, margin}, {place, height - margin}, 0.5, grey);
        canvas.drawText({place - textHeight, height - margin + 1.5 * textHeight}, textHeight, black,
                        toText(mark).toUtf8());
    }
    for (const double mark : y.getMarks())
    {
        const double place = y.toPage(mark);
        canvas.drawLine({margin, place}, {width - margin, place}, 0.5, grey);
        canvas.drawText({textHeight, place + textHeight / 3}, textHeight, black, toText(mark).toUtf8());
    }
}
} // namespace

void CurvePlot::draw(std::ostream& out, const Points& points) const
{
    const Axis x = createAxis(points, &Point::x, margin, width - margin);
    const Axis y = createAxis(points, &Point::y, height - margin, margin);
    const auto toPage = [&](const Point& point) { return Canvas::Point{x.toPage(point.x), y.toPage(point.y)}; };

    Canvas canvas(out, width, height);
    drawMarks(canvas, x, y);
    canvas.drawText({margin, margin - 2 * textHeight}, textHeight, black, m_yTitle.toUtf8());
    canvas.drawText({width / 2 - margin, height - margin + 4 * textHeight}, textHeight, black, m_xTitle.toUtf8());
    for (std::size_t i = 1; i < points.size(); ++i)
        canvas.drawLine(toPage(points[i - 1]), toPage(points[i]), 1.5, blue);
    for (const Point& point : points)
        canvas.fillCircle(toPage(point), 2, blue);
    canvas.finish();
}
} // namespace truss
