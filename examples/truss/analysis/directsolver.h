// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include "truss/analysis/equationsolver.h"

#include <future>
#include <memory>

namespace truss
{
class Equations;
class Factorization;

/// Solves by factorizing the stiffness matrix: exact, and finds every mechanism.
///
/// A factorization cannot be stopped halfway. It runs on a thread of its own, a step only waits for it a little, and a
/// solver that is destroyed before the end leaves it to itself. So an interruption takes effect at once. There are
/// never more factorizations than processors; another one waits for its turn.
class DirectSolver : public EquationSolver
{
public:
    /// The equations outlive the solver.
    explicit DirectSolver(const Equations& equations);
    ~DirectSolver() override;

    bool step() override;
    int getPercent() const override;

private:
    /// @return whether it could: there is a bound on factorizations at a time.
    bool start();
    void finish();

    const Equations& m_equations;
    std::shared_ptr<Factorization> m_factorization; // null before the first step; shared with the thread
    std::future<void> m_end;
};
} // namespace truss
