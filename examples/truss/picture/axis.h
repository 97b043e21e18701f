// SPDX-License-Identifier: MIT
// truss: picture
#pragma once

#include <vector>

namespace truss
{
/// A scale that takes values to a range of the page, with round numbers as its marks.
class Axis
{
public:
    /// For values from `least` to `most`, drawn between `begin` and `end`, in points.
    Axis(double least, double most, double begin, double end);

    double toPage(double value) const;
    std::vector<double> getMarks() const;

private:
    double m_step; // between two marks
    double m_least;
    double m_most;
    double m_begin;
    double m_end;
};
} // namespace truss
