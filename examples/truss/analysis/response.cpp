// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/response.h"

#include <algorithm>
#include <cmath>

namespace truss
{
Response::Displacement Response::findLargestDisplacement() const
{
    Displacement largest{};
    for (std::size_t joint = 0; joint < displacements.size(); ++joint)
    {
        Eigen::Index axis = 0;
        displacements[joint].cwiseAbs().maxCoeff(&axis);
        const double value = displacements[joint][axis];
        if (std::abs(value) > std::abs(largest.value))
            largest = {joint, static_cast<std::size_t>(axis), value};
    }
    return largest;
}

std::size_t Response::findLargestStress() const
{
    const auto largest = std::max_element(stresses.begin(), stresses.end(),
                                          [](double a, double b) { return std::abs(a) < std::abs(b); });
    return static_cast<std::size_t>(largest - stresses.begin());
}
} // namespace truss
