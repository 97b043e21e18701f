// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include "truss/analysis/equationsolver.h"

#include <Eigen/SparseCholesky>

namespace truss
{
class Equations;

/// Factorizes the stiffness matrix. Exact, finds every mechanism, and the right choice up to some hundred thousand
/// unknowns; a single factorization cannot be interrupted.
class DirectSolver : public EquationSolver
{
public:
    /// The equations outlive the solver.
    explicit DirectSolver(const Equations& equations) : m_equations(equations) {}

    bool step() override;
    int getPercent() const override;

private:
    enum class Phase
    {
        Ordering,
        Factorization,
        Substitution,
        Done
    };

    void checkPivots() const;

    const Equations& m_equations;
    Phase m_phase = Phase::Ordering;
    Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> m_factors;
};
} // namespace truss
