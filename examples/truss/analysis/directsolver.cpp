// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/directsolver.h"

#include "truss/analysis/equations.h"
#include "truss/analysis/factorization.h"

#include <algorithm>
#include <chrono>
#include <semaphore>
#include <thread>
#include <utility>

namespace truss
{
namespace
{
constexpr std::chrono::milliseconds waitingStep(20);

/// As many factorizations at a time as there are processors, those included that nobody waits for any more.
std::counting_semaphore<>& getSlots()
{
    static std::counting_semaphore<> s_slots(std::max(1u, std::thread::hardware_concurrency()));
    return s_slots;
}
} // namespace

DirectSolver::DirectSolver(const Equations& equations) : m_equations(equations) {}

DirectSolver::~DirectSolver() = default;

bool DirectSolver::step()
{
    if (m_factorization == nullptr && !start())
        return true;
    if (m_end.wait_for(waitingStep) != std::future_status::ready)
        return true;
    finish();
    return false;
}

int DirectSolver::getPercent() const
{
    return m_factorization == nullptr ? 0 : 50;
}

bool DirectSolver::start()
{
    auto& slots = getSlots();
    if (!slots.try_acquire_for(waitingStep))
        return false;
    try
    {
        m_factorization = std::make_shared<Factorization>(m_equations);
        std::packaged_task<void()> work([shared = m_factorization] { shared->perform(); });
        m_end = work.get_future();
        std::thread(
            [&slots, work = std::move(work)]() mutable
            {
                work();
                work = {}; // its memory is free before another begins
                slots.release();
            })
            .detach();
    }
    catch (...)
    {
        slots.release();
        throw;
    }
    return true;
}

void DirectSolver::finish()
{
    m_end.get(); // throws what the thread has thrown
    if (m_factorization->getFreeUnknown())
        m_equations.throwMechanism(*m_factorization->getFreeUnknown());
    m_unknowns = m_factorization->getUnknowns();
}
} // namespace truss
