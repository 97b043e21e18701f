// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/directsolver.h"

#include "truss/analysis/equations.h"
#include "truss/analysis/mechanism.h"

namespace truss
{
namespace
{
/// A pivot is what is left of a joint's stiffness when all others give way. Rounding leaves some 1e-15 of it where
/// nothing should be left; slender but sound structures keep more than this.
constexpr double smallestPivot = 1e-12;
} // namespace

bool DirectSolver::step()
{
    switch (m_phase)
    {
    case Phase::Ordering:
        m_factors.analyzePattern(m_equations.getMatrix());
        m_phase = Phase::Factorization;
        return true;
    case Phase::Factorization:
        m_factors.factorize(m_equations.getMatrix());
        checkPivots();
        m_phase = Phase::Substitution;
        return true;
    default:
        m_unknowns = m_factors.solve(m_equations.getLoads());
        m_phase = Phase::Done;
        return false;
    }
}

int DirectSolver::getPercent() const
{
    return static_cast<int>(m_phase) * 100 / static_cast<int>(Phase::Done);
}

void DirectSolver::checkPivots() const
{
    if (m_factors.info() != Eigen::Success)
        Mechanism(m_equations).throwProblem();
    const Eigen::VectorXd scales = m_factors.permutationP() * m_equations.getScales();
    if ((m_factors.vectorD().array() <= smallestPivot * scales.array()).any())
        Mechanism(m_equations).throwProblem();
}
} // namespace truss
