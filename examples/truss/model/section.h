// SPDX-License-Identifier: MIT
// truss: model
#pragma once

namespace truss
{
/// Cross-section and material of a bar, in any consistent set of units.
struct Section
{
    double area = 0;    ///< positive
    double modulus = 0; ///< of elasticity, positive
    double density = 0; ///< weight for each unit of volume, not negative
};
} // namespace truss
