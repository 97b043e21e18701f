// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include "truss/analysis/equationsolver.h"

#include <Eigen/IterativeLinearSolvers>

namespace truss
{
class Equations;

/// Approaches the solution by preconditioned conjugate gradients, some iterations a step.
///
/// Needs little memory, which makes it the choice for very large structures; but a mechanism that the loads do not set
/// moving escapes it, and where the iteration fails, telling which node moves takes a factorization after all. The
/// iteration is written out here because the one of the linear algebra library cannot pause without losing its
/// direction.
class IterativeSolver : public EquationSolver
{
public:
    /// The equations outlive the solver.
    explicit IterativeSolver(const Equations& equations) : m_equations(equations) {}

    bool step() override;
    int getPercent() const override;

private:
    void begin();
    void iterate();
    bool hasConverged() const;
    void checkConverging() const;

    const Equations& m_equations;
    Eigen::IncompleteCholesky<double> m_preconditioner;
    Eigen::VectorXd m_residual; // loads that are not balanced yet; empty before the first step
    Eigen::VectorXd m_direction;
    double m_energy = 0; // of the residual, as the preconditioner sees it
    Eigen::Index m_iterations = 0;
};
} // namespace truss
