// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/factorization.h"

#include "truss/analysis/equations.h"
#include "truss/analysis/softestmotion.h"

#include <Eigen/SparseCholesky>

namespace truss
{
namespace
{
using Factors = Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>>;

/// A pivot is what is left of a joint's stiffness when all others give way. Rounding leaves some 1e-15 of it where
/// nothing should be left; slender but sound structures keep more than this.
constexpr double smallestPivot = 1e-12;

bool isSound(const Factors& factors, const Eigen::VectorXd& scales)
{
    if (factors.info() != Eigen::Success)
        return false;
    const Eigen::VectorXd ordered = factors.permutationP() * scales;
    return (factors.vectorD().array() > smallestPivot * ordered.array()).all();
}
} // namespace

Factorization::Factorization(const Equations& equations)
    : m_matrix(equations.getMatrix()),
      m_loads(equations.getLoads()),
      m_scales(equations.getScales())
{
}

void Factorization::perform()
{
    const Factors factors(m_matrix);
    if (isSound(factors, m_scales))
        m_unknowns = factors.solve(m_loads);
    else
        m_freeUnknown = SoftestMotion(m_matrix, m_scales).getFarthest();
}
} // namespace truss
