// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include <Eigen/Core>

namespace truss
{
/// Solves the equations of a structure in steps, so that the caller can show progress and stop in between.
///
///     while (solver.step())
///         status.checkInterrupt(solver.getPercent());
///     use(solver.getUnknowns());
class EquationSolver
{
public:
    EquationSolver() = default;
    EquationSolver(const EquationSolver&) = delete;
    EquationSolver& operator=(const EquationSolver&) = delete;
    virtual ~EquationSolver() = default;

    /// Does the next piece of work; @return whether there is more. A structure that cannot carry its loads is a
    /// Problem.
    virtual bool step() = 0;

    /// How far it has come, 0 to 100.
    virtual int getPercent() const = 0;

    /// The solution; complete once step() has returned false.
    const Eigen::VectorXd& getUnknowns() const { return m_unknowns; }

protected:
    Eigen::VectorXd m_unknowns;
};
} // namespace truss
