// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include "truss/analysis/structure.h"

#include <Eigen/Core>

#include <cstddef>
#include <vector>

namespace truss
{
/// How a structure answers its loads: the result of an analysis.
struct Response
{
    explicit Response(Structure analysed) : structure(std::move(analysed)) {}

    struct Displacement
    {
        std::size_t joint;
        std::size_t axis; ///< 0 to 2
        double value;
    };

    /// The largest displacement along an axis, in size. There is a joint.
    Displacement findLargestDisplacement() const;
    /// The member with the largest stress, in size. There is a member.
    std::size_t findLargestStress() const;

    Structure structure;
    std::vector<Eigen::Vector3d> displacements; ///< by joint
    std::vector<Eigen::Vector3d> reactions;     ///< by joint; zero where it is not held
    std::vector<double> forces;                 ///< by member; tension is positive
    std::vector<double> stresses;               ///< by member
};
} // namespace truss
