// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/iterativesolver.h"

#include "truss/analysis/equations.h"
#include "truss/analysis/softestmotion.h"

#include <kel/problem.h>
#include <kel/translator.h>

#include <algorithm>
#include <cmath>

namespace truss
{
namespace
{
constexpr double tolerance = 1e-12; // of the loads, relative
constexpr int iterationsPerStep = 10;
constexpr Eigen::Index mostIterationsPerUnknown = 10;
} // namespace

bool IterativeSolver::step()
{
    if (m_residual.size() == 0)
        begin();
    for (int i = 0; i < iterationsPerStep && !hasConverged(); ++i)
        iterate();
    checkConverging();
    return !hasConverged();
}

int IterativeSolver::getPercent() const
{
    if (m_residual.size() == 0)
        return 0;
    // The residual falls by about the same factor in each step, so its logarithm shows how far it has come.
    const double left = m_residual.norm() / m_equations.getLoads().norm();
    return static_cast<int>(std::clamp(100 * std::log(left) / std::log(tolerance), 0.0, 100.0));
}

void IterativeSolver::begin()
{
    m_preconditioner.compute(m_equations.getMatrix());
    m_unknowns = Eigen::VectorXd::Zero(m_equations.getLoads().size());
    m_residual = m_equations.getLoads();
    m_direction = m_preconditioner.solve(m_residual);
    m_energy = m_residual.dot(m_direction);
}

void IterativeSolver::iterate()
{
    const Eigen::VectorXd resistance = m_equations.getMatrix() * m_direction;
    const double length = m_energy / m_direction.dot(resistance);
    m_unknowns += length * m_direction;
    m_residual -= length * resistance;

    const Eigen::VectorXd preconditioned = m_preconditioner.solve(m_residual);
    const double energy = m_residual.dot(preconditioned);
    m_direction = preconditioned + energy / m_energy * m_direction;
    m_energy = energy;
    ++m_iterations;
}

bool IterativeSolver::hasConverged() const
{
    return m_residual.norm() <= tolerance * m_equations.getLoads().norm();
}

void IterativeSolver::checkConverging() const
{
    if (std::isfinite(m_energy) && m_iterations < mostIterationsPerUnknown * m_unknowns.size() + iterationsPerStep)
        return;
    const SoftestMotion motion(m_equations.getMatrix(), m_equations.getScales());
    if (motion.isFree())
        m_equations.throwMechanism(motion.getFarthest());
    Problem::throwProblem(Translator::tr("The iterative solver does not converge"));
}
} // namespace truss
