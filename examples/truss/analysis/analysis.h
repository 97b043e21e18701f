// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include "truss/analysis/equations.h"
#include "truss/analysis/response.h"

#include <memory>

namespace truss
{
class EquationSolver;

/// The linear static analysis of a structure, done in steps:
///
///     Analysis analysis(Structure(model), Analysis::Method::Direct);
///     while (analysis.step())
///         Status::getSingleton().checkInterrupt(analysis.getPercent());
///     std::unique_ptr<Response> response = analysis.takeResponse();
class Analysis
{
public:
    enum class Method
    {
        Direct,
        Iterative
    };

    /// A structure without bars is a Problem.
    Analysis(Structure structure, Method method);
    ~Analysis();

    /// Does the next piece of work; @return whether there is more. A mechanism is a Problem.
    bool step();

    /// How far it has come, 0 to 100.
    int getPercent() const;

    /// The result; call it once, after step() has returned false.
    std::unique_ptr<Response> takeResponse() { return std::move(m_response); }

private:
    enum class Phase
    {
        Assembly,
        Solution,
        Recovery,
        Done
    };

    void assemble();
    void solve();
    void recover();
    void recoverMember(const Structure::Member& member);
    void recoverReactions();
    void checkFinite() const;

    std::unique_ptr<Response> m_response; // holds the structure from the start
    Equations m_equations;
    std::unique_ptr<EquationSolver> m_solver;
    Phase m_phase = Phase::Assembly;
};
} // namespace truss
