// SPDX-License-Identifier: MIT
// truss: picture
#include "truss/picture/axis.h"

#include "truss/picture/roundnumber.h"

#include <cmath>

namespace truss
{
namespace
{
constexpr double mostMarks = 10;

double chooseStep(double least, double most)
{
    const double range = most - least;
    const double step = range > 0 ? range / mostMarks : std::abs(most) / mostMarks;
    return step > 0 && std::isfinite(step) ? RoundNumber::above(step) : 1;
}
} // namespace

Axis::Axis(double least, double most, double begin, double end)
    : m_step(chooseStep(least, most)),
      m_least(std::floor(least / m_step) * m_step),
      m_most(std::ceil(most / m_step) * m_step),
      m_begin(begin),
      m_end(end)
{
    if (m_most == m_least)
        m_most += m_step;
}

double Axis::toPage(double value) const
{
    return m_begin + (value - m_least) / (m_most - m_least) * (m_end - m_begin);
}

std::vector<double> Axis::getMarks() const
{
    std::vector<double> marks;
    const auto count = std::lround((m_most - m_least) / m_step);
    for (long i = 0; i <= count; ++i)
        marks.push_back((std::round(m_least / m_step) + static_cast<double>(i)) * m_step);
    return marks;
}
} // namespace truss
