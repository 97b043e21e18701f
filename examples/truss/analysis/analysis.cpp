// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/analysis.h"

#include "truss/analysis/directsolver.h"
#include "truss/analysis/iterativesolver.h"

#include <kel/problem.h>
#include <kel/translator.h>

#include <algorithm>
#include <utility>

namespace truss
{
namespace
{
constexpr std::size_t membersPerStep = 5000;

std::unique_ptr<EquationSolver> createSolver(Analysis::Method method, const Equations& equations)
{
    if (method == Analysis::Method::Iterative)
        return std::make_unique<IterativeSolver>(equations);
    return std::make_unique<DirectSolver>(equations);
}
} // namespace

Analysis::Analysis(Structure structure, Method method)
    : m_response(std::make_unique<Response>(std::move(structure))),
      m_equations(m_response->structure),
      m_solver(createSolver(method, m_equations))
{
    if (m_response->structure.getMembers().empty())
        Problem::throwProblem(Translator::tr("There is no bar to solve for"));
}

Analysis::~Analysis() = default;

bool Analysis::step()
{
    switch (m_phase)
    {
    case Phase::Assembly:
        assemble();
        break;
    case Phase::Solution:
        solve();
        break;
    default:
        recover();
        m_phase = Phase::Done;
    }
    return m_phase != Phase::Done;
}

void Analysis::assemble()
{
    if (m_equations.assemble(membersPerStep))
        return;
    m_equations.finish();
    m_phase = m_equations.size() == 0 ? Phase::Recovery : Phase::Solution;
}

void Analysis::solve()
{
    if (!m_solver->step())
        m_phase = Phase::Recovery;
}

int Analysis::getPercent() const
{
    switch (m_phase)
    {
    case Phase::Assembly:
        return static_cast<int>(30 * m_equations.getAssembledCount() / m_response->structure.getMembers().size());
    case Phase::Solution:
        return 30 + m_solver->getPercent() * 60 / 100;
    default:
        return 90;
    }
}

void Analysis::recover()
{
    m_response->displacements = m_equations.expand(m_solver->getUnknowns());
    for (const auto& member : m_response->structure.getMembers())
        recoverMember(member);
    recoverReactions();
    checkFinite();
}

void Analysis::recoverMember(const Structure::Member& member)
{
    const Structure& structure = m_response->structure;
    const Eigen::Vector3d direction = structure.getAxis(member) / structure.getLength(member);
    const double elongation =
        direction.dot(m_response->displacements[member.to] - m_response->displacements[member.from]);
    m_response->forces.push_back(structure.getStiffness(member) * elongation);
    m_response->stresses.push_back(m_response->forces.back() / member.section.area);
}

// What the bars and loads pull at a joint in a direction in which it is held, the support has to take.
void Analysis::recoverReactions()
{
    const Structure& structure = m_response->structure;
    auto& reactions = m_response->reactions;
    for (const auto& joint : structure.getJoints())
        reactions.emplace_back(Eigen::Vector3d::Zero() - joint.force); // no negative zeros
    for (std::size_t i = 0; i < structure.getMembers().size(); ++i)
    {
        const auto& member = structure.getMembers()[i];
        const Eigen::Vector3d pull = m_response->forces[i] * structure.getAxis(member) / structure.getLength(member);
        reactions[member.from] -= pull;
        reactions[member.to] += pull;
    }
    for (std::size_t joint = 0; joint < reactions.size(); ++joint)
    {
        for (std::size_t i = 0; i < 3; ++i)
        {
            if (!structure.getJoints()[joint].held[i])
                reactions[joint][static_cast<Eigen::Index>(i)] = 0;
        }
    }
}

void Analysis::checkFinite() const
{
    const bool finite = std::all_of(m_response->displacements.begin(), m_response->displacements.end(),
                                    [](const Eigen::Vector3d& displacement) { return displacement.allFinite(); });
    if (!finite || !Eigen::Map<const Eigen::VectorXd>(m_response->stresses.data(),
                                                      static_cast<Eigen::Index>(m_response->stresses.size()))
                        .allFinite())
        Problem::throwProblem(Translator::tr("The numbers of the model are too large or too small to solve with"));
}
} // namespace truss
