// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/softestmotion.h"

#include <Eigen/SparseCholesky>

namespace truss
{
namespace
{
/// Of each joint's stiffness: added so that a singular matrix can be factorized, small enough to leave a free motion by
/// far the softest.
constexpr double shift = 1e-9;

/// Where no bar meets a joint, any stiffness will do to make the matrix regular.
constexpr double leastScale = 1e-200;

/// Each round makes a free motion stand out by a factor of about 1 / shift.
constexpr int rounds = 3;
} // namespace

SoftestMotion::SoftestMotion(const Matrix& stiffness, const Eigen::VectorXd& scales)
{
    const Eigen::VectorXd motion = find(stiffness, scales);
    motion.cwiseAbs().maxCoeff(&m_farthest);
    const double resistance = motion.dot(stiffness * motion);
    m_isFree = resistance <= shift * motion.dot(scales.cwiseProduct(motion));
}

// Inverse iteration: solving again and again with the shifted matrix leaves the softest motion.
Eigen::VectorXd SoftestMotion::find(const Matrix& stiffness, const Eigen::VectorXd& scales)
{
    const Eigen::VectorXd weights = scales.cwiseMax(leastScale);
    Matrix shifted = stiffness;
    shifted += Matrix((shift * weights).asDiagonal());
    const Eigen::SimplicialLDLT<Matrix> factors(shifted);

    Eigen::VectorXd motion = Eigen::VectorXd::LinSpaced(weights.size(), 1, 2); // any start that is not special will do
    for (int round = 0; round < rounds; ++round)
        motion = factors.solve(weights.cwiseProduct(motion)).stableNormalized();
    return motion;
}
} // namespace truss
