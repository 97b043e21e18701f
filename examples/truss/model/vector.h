// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include <array>
#include <cmath>

namespace truss
{
/// Three components along x, y and z: a position, a force or a displacement.
using Vector = std::array<double, 3>;

/// The distance of two points; does not overflow before the result does.
inline double distance(const Vector& from, const Vector& to)
{
    return std::hypot(to[0] - from[0], to[1] - from[1], to[2] - from[2]);
}
} // namespace truss
