// SPDX-License-Identifier: MIT
// truss: picture
#include "truss/picture/trusspicture.h"

#include "truss/analysis/response.h"
#include "truss/picture/roundnumber.h"
#include "truss/text/text.h"

#include <kel/branding.h>
#include <kel/translator.h>

#include <algorithm>
#include <cmath>

namespace truss
{
namespace
{
using Color = Canvas::Color;
using Point = Canvas::Point;

// In points.
constexpr double drawingSize = 640;
constexpr double margin = 80;
constexpr double leastPageWidth = 480; // for the caption
constexpr double jointRadius = 3;
constexpr double supportSize = 10;
constexpr double longestArrow = 50;
constexpr double arrowHead = 6;
constexpr double textHeight = 12;

constexpr Color grey{0.6, 0.6, 0.6};
constexpr Color black{0, 0, 0};
constexpr Color green{0, 0.5, 0.2};
constexpr Color tension{0.1, 0.3, 0.8};
constexpr Color compression{0.8, 0.15, 0.1};

constexpr double deflectionShare = 0.08; // of the extent of the drawing, at most
constexpr std::size_t mostNames = 100;   // more would hide the drawing

Color colorOf(double force)
{
    if (force == 0)
        return grey;
    return force > 0 ? tension : compression;
}
} // namespace

TrussPicture::TrussPicture(std::ostream& out, const Structure& structure, const Response* response)
    : m_structure(structure),
      m_response(response),
      m_projection(structure, drawingSize, margin),
      m_canvas(out, std::max(leastPageWidth, m_projection.getPageWidth()), m_projection.getPageHeight()),
      m_magnification(chooseMagnification()),
      m_largestForce(findLargestForce())
{
}

bool TrussPicture::draw(std::size_t count)
{
    const std::size_t all = m_structure.getMembers().size();
    const std::size_t end = std::min(all, m_drawn + count);
    for (; m_drawn < end; ++m_drawn)
        drawMember(m_drawn);
    if (m_drawn < all)
        return true;
    drawJoints();
    drawCaption();
    m_canvas.finish();
    return false;
}

int TrussPicture::getPercent() const
{
    return static_cast<int>(100 * m_drawn / std::max<std::size_t>(1, m_structure.getMembers().size()));
}

void TrussPicture::drawMember(std::size_t index)
{
    const auto& member = m_structure.getMembers()[index];
    const Point from = m_projection(m_structure.getJoints()[member.from].position);
    const Point to = m_projection(m_structure.getJoints()[member.to].position);
    if (m_response == nullptr)
    {
        m_canvas.drawLine(from, to, 2, black);
        return;
    }
    m_canvas.drawDashedLine(from, to, 1, grey);
    m_canvas.drawLine(m_projection(getDeflected(member.from)), m_projection(getDeflected(member.to)), 2,
                      colorOf(m_response->forces[index]));
}

void TrussPicture::drawJoints()
{
    const auto& joints = m_structure.getJoints();
    for (const auto& joint : joints)
    {
        const Point place = m_projection(joint.position);
        drawSupport(joint);
        drawLoad(joint);
        m_canvas.fillCircle(place, jointRadius, black);
        if (joints.size() <= mostNames)
            m_canvas.drawText({place.x + 6, place.y - 6}, textHeight, black, joint.name.toUtf8());
    }
}

void TrussPicture::drawSupport(const Structure::Joint& joint)
{
    const Point top = m_projection(joint.position);
    // A plane truss is held everywhere at right angles to its plane; that alone is not worth a mark.
    if (std::count(joint.held.begin(), joint.held.end(), true) < (m_projection.isPlane() ? 2 : 1))
        return;
    m_canvas.fillTriangle(top, {top.x - supportSize / 2, top.y + supportSize},
                          {top.x + supportSize / 2, top.y + supportSize}, green);
}

void TrussPicture::drawLoad(const Structure::Joint& joint)
{
    if (joint.force.isZero(0))
        return;
    const Eigen::Vector3d direction = joint.force / m_largestForce * m_projection.getExtent();
    const Point tip = m_projection(joint.position);
    const Point far = m_projection(joint.position - direction);
    const double scale = longestArrow / drawingSize;
    const Point shaft{(far.x - tip.x) * scale, (far.y - tip.y) * scale};
    const double length = std::hypot(shaft.x, shaft.y);
    if (length < jointRadius) // seen from behind, or next to nothing
        return;
    const Point unit{shaft.x / length * arrowHead, shaft.y / length * arrowHead};
    m_canvas.drawLine({tip.x + shaft.x, tip.y + shaft.y}, tip, 1.5, green);
    m_canvas.fillTriangle(tip, {tip.x + unit.x - unit.y / 2, tip.y + unit.y + unit.x / 2},
                          {tip.x + unit.x + unit.y / 2, tip.y + unit.y - unit.x / 2}, green);
}

void TrussPicture::drawCaption()
{
    Ztring caption = fill(Translator::tr("Weight: %1"), toText(m_structure.getWeight()));
    if (m_response != nullptr)
    {
        caption += ", ";
        caption += fill(Translator::tr("displacements magnified %1 times"), toText(m_magnification));
    }
    Ztring credit;
    Branding::getSingleton()->appendCredit(credit);
    const double bottom = m_projection.getPageHeight() - textHeight;
    m_canvas.drawText({textHeight, bottom - 1.5 * textHeight}, textHeight, black, caption.toUtf8());
    m_canvas.drawText({textHeight, bottom}, 0.75 * textHeight, grey, credit.toUtf8());
}

double TrussPicture::chooseMagnification() const
{
    if (m_response == nullptr)
        return 1;
    const double largest = std::abs(m_response->findLargestDisplacement().value);
    const double magnification = deflectionShare * m_projection.getExtent() / largest;
    return magnification > 0 && std::isfinite(magnification) ? RoundNumber::below(magnification) : 1;
}

double TrussPicture::findLargestForce() const
{
    double largest = 0;
    for (const auto& joint : m_structure.getJoints())
        largest = std::max(largest, joint.force.stableNorm());
    return largest;
}

Eigen::Vector3d TrussPicture::getDeflected(std::size_t joint) const
{
    return m_structure.getJoints()[joint].position + m_magnification * m_response->displacements[joint];
}
} // namespace truss
