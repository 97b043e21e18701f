// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/iterativesolver.h"

#include "truss/analysis/equations.h"
#include "truss/analysis/mechanism.h"

#include <kel/problem.h>
#include <kel/translator.h>

#include <algorithm>
#include <cmath>

namespace truss
{
namespace
{
constexpr double tolerance = 1e-12;             // of the loads, relative
constexpr Eigen::Index iterationsPerStep = 200; // each step starts afresh, so not too few
constexpr Eigen::Index mostIterationsPerUnknown = 20;
} // namespace

IterativeSolver::IterativeSolver(const Equations& equations) : m_equations(equations)
{
    m_unknowns = Eigen::VectorXd::Zero(equations.getLoads().size());
    m_iteration.setTolerance(tolerance);
    m_iteration.setMaxIterations(iterationsPerStep);
}

bool IterativeSolver::step()
{
    if (!m_prepared)
    {
        m_iteration.compute(m_equations.getMatrix());
        m_prepared = true;
        return true;
    }
    m_unknowns = m_iteration.solveWithGuess(m_equations.getLoads(), m_unknowns);
    m_iterations += m_iteration.iterations();
    m_error = m_iteration.error();
    if (m_iteration.info() == Eigen::Success)
        return false;
    if (!std::isfinite(m_error) || m_iterations > mostIterationsPerUnknown * m_unknowns.size())
        throwNotConverged();
    return true;
}

int IterativeSolver::getPercent() const
{
    // The error falls by about the same factor in each step, so its logarithm shows how far it has come.
    return static_cast<int>(std::clamp(100 * std::log(m_error) / std::log(tolerance), 0.0, 100.0));
}

void IterativeSolver::throwNotConverged() const
{
    const Mechanism mechanism(m_equations);
    if (mechanism.isFree())
        mechanism.throwProblem();
    Problem::throwProblem(Translator::tr("The iterative solver does not converge"));
}
} // namespace truss
