// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include <Eigen/SparseCore>

namespace truss
{
/// The motion that meets the least resistance of a stiffness matrix: in a mechanism one that meets none.
///
/// Pure numbers, usable on any thread.
class SoftestMotion
{
public:
    using Matrix = Eigen::SparseMatrix<double>;

    /// Looks for the motion. The scales say how stiff the joint of each unknown is altogether.
    SoftestMotion(const Matrix& stiffness, const Eigen::VectorXd& scales);

    /// Whether the motion meets (almost) no resistance.
    bool isFree() const { return m_isFree; }
    /// The unknown that moves farthest.
    Eigen::Index getFarthest() const { return m_farthest; }

private:
    static Eigen::VectorXd find(const Matrix& stiffness, const Eigen::VectorXd& scales);

    Eigen::Index m_farthest = 0;
    bool m_isFree = false;
};
} // namespace truss
