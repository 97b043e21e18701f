// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include <Eigen/Core>

#include <cstddef>

namespace truss
{
class Equations;

/// The motion that meets no resistance in a structure that is not held together.
class Mechanism
{
public:
    /// Looks for the motion; the equations outlive this.
    explicit Mechanism(const Equations& equations);

    /// Whether the motion found really meets (almost) no resistance.
    bool isFree() const { return m_isFree; }

    /// Says that the structure is a mechanism and names the joint that moves farthest.
    [[noreturn]] void throwProblem() const;

private:
    Eigen::VectorXd findMotion() const;
    bool meetsNoResistance(const Eigen::VectorXd& motion) const;

    const Equations& m_equations;
    std::size_t m_joint = 0;
    bool m_isFree = false;
};
} // namespace truss
