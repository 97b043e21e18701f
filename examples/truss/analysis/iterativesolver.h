// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include "truss/analysis/equationsolver.h"

#include <Eigen/IterativeLinearSolvers>

namespace truss
{
class Equations;

/// Approaches the solution by conjugate gradients, some iterations a step. Needs little memory and can be interrupted
/// at any time, which makes it the choice for very large structures; but a mechanism that the loads do not set moving
/// escapes it.
class IterativeSolver : public EquationSolver
{
public:
    /// The equations outlive the solver.
    explicit IterativeSolver(const Equations& equations);

    bool step() override;
    int getPercent() const override;

private:
    [[noreturn]] void throwNotConverged() const;

    const Equations& m_equations;
    Eigen::ConjugateGradient<Eigen::SparseMatrix<double>, Eigen::Lower | Eigen::Upper,
                             Eigen::IncompleteCholesky<double>>
        m_iteration;
    bool m_prepared = false;
    Eigen::Index m_iterations = 0;
    double m_error = 1; // of the loads, relative
};
} // namespace truss
