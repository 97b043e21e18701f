// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/directsolver.h"

#include "truss/analysis/equations.h"
#include "truss/analysis/factorization.h"

#include <chrono>
#include <thread>
#include <utility>

namespace truss
{
namespace
{
constexpr std::chrono::milliseconds waitingStep(20);
} // namespace

DirectSolver::DirectSolver(const Equations& equations) : m_equations(equations) {}

DirectSolver::~DirectSolver() = default;

bool DirectSolver::step()
{
    if (m_factorization == nullptr)
        start();
    if (m_end.wait_for(waitingStep) != std::future_status::ready)
        return true;
    finish();
    return false;
}

int DirectSolver::getPercent() const
{
    return m_factorization == nullptr ? 0 : 50;
}

void DirectSolver::start()
{
    m_factorization = std::make_shared<Factorization>(m_equations);
    std::packaged_task<void()> work([shared = m_factorization] { shared->perform(); });
    m_end = work.get_future();
    std::thread(std::move(work)).detach();
}

void DirectSolver::finish()
{
    m_end.get(); // throws what the thread has thrown
    if (m_factorization->getFreeUnknown())
        m_equations.throwMechanism(*m_factorization->getFreeUnknown());
    m_unknowns = m_factorization->getUnknowns();
}
} // namespace truss
