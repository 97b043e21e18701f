// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/mechanism.h"

#include "truss/analysis/equations.h"
#include "truss/model/text.h"

#include <kel/problem.h>
#include <kel/translator.h>

#include <Eigen/SparseCholesky>

namespace truss
{
namespace
{
/// Of each joint's stiffness: added so that the singular matrix can be factorized, small enough to leave the free
/// motion by far the softest.
constexpr double shift = 1e-9;

/// Where no bar meets a joint, any stiffness will do to make the matrix regular.
constexpr double leastScale = 1e-200;

/// Each round makes the free motion stand out by a factor of about 1 / shift.
constexpr int rounds = 3;
} // namespace

Mechanism::Mechanism(const Equations& equations) : m_equations(equations)
{
    const Eigen::VectorXd motion = findMotion();
    Eigen::Index farthest = 0;
    motion.cwiseAbs().maxCoeff(&farthest);
    m_joint = equations.getJoint(static_cast<std::size_t>(farthest));
    m_isFree = meetsNoResistance(motion);
}

// Inverse iteration: solving again and again with the shifted matrix leaves the softest motion.
Eigen::VectorXd Mechanism::findMotion() const
{
    const Eigen::VectorXd scales = m_equations.getScales().cwiseMax(leastScale);
    Equations::Matrix shifted = m_equations.getMatrix();
    shifted += Equations::Matrix((shift * scales).asDiagonal());
    const Eigen::SimplicialLDLT<Equations::Matrix> factors(shifted);

    Eigen::VectorXd motion = Eigen::VectorXd::LinSpaced(scales.size(), 1, 2); // any start that is not special will do
    for (int round = 0; round < rounds; ++round)
        motion = factors.solve(scales.cwiseProduct(motion)).stableNormalized();
    return motion;
}

bool Mechanism::meetsNoResistance(const Eigen::VectorXd& motion) const
{
    const double resistance = motion.dot(m_equations.getMatrix() * motion);
    const double available = motion.dot(m_equations.getScales().cwiseProduct(motion));
    return resistance <= shift * available;
}

void Mechanism::throwProblem() const
{
    const Ztring& name = m_equations.getStructure().getJoints()[m_joint].name;
    Problem::throwProblem(fill(Translator::tr("The truss is a mechanism: node '%1' moves freely"), name));
}
} // namespace truss
