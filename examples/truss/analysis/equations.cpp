// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/equations.h"

#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/translator.h>

#include <algorithm>

namespace truss
{
Equations::Equations(const Structure& structure)
    : m_structure(structure),
      m_jointStiffness(structure.getJoints().size(), 0.0)
{
    numberUnknowns();
}

void Equations::numberUnknowns()
{
    std::vector<double> loads;
    for (std::size_t joint = 0; joint < m_structure.getJoints().size(); ++joint)
    {
        auto& numbers = m_numbers.emplace_back();
        for (std::size_t i = 0; i < 3; ++i)
        {
            numbers[i] = m_structure.getJoints()[joint].held[i] ? s_none : static_cast<int>(m_jointOf.size());
            if (numbers[i] == s_none)
                continue;
            m_jointOf.push_back(joint);
            loads.push_back(m_structure.getJoints()[joint].force[static_cast<Eigen::Index>(i)]);
        }
    }
    m_loads = Eigen::Map<const Eigen::VectorXd>(loads.data(), static_cast<Eigen::Index>(loads.size()));
}

bool Equations::assemble(std::size_t count)
{
    const auto& members = m_structure.getMembers();
    const std::size_t end = std::min(members.size(), m_assembled + count);
    for (; m_assembled < end; ++m_assembled)
        assemble(members[m_assembled]);
    return m_assembled < members.size();
}

void Equations::assemble(const Structure::Member& member)
{
    const double stiffness = m_structure.getStiffness(member);
    const Eigen::Vector3d direction = m_structure.getAxis(member) / m_structure.getLength(member);
    const Eigen::Matrix3d block = stiffness * direction * direction.transpose();
    assembleBlock(member.from, member.from, block);
    assembleBlock(member.to, member.to, block);
    assembleBlock(member.from, member.to, -block);
    assembleBlock(member.to, member.from, -block);
    m_jointStiffness[member.from] += stiffness;
    m_jointStiffness[member.to] += stiffness;
}

void Equations::assembleBlock(std::size_t row, std::size_t column, const Eigen::Matrix3d& block)
{
    for (std::size_t i = 0; i < 3; ++i)
    {
        for (std::size_t j = 0; j < 3; ++j)
        {
            const int rowNumber = m_numbers[row][i];
            const int columnNumber = m_numbers[column][j];
            if (rowNumber != s_none && columnNumber != s_none)
                m_entries.emplace_back(rowNumber, columnNumber,
                                       block(static_cast<Eigen::Index>(i), static_cast<Eigen::Index>(j)));
        }
    }
}

void Equations::finish()
{
    const auto count = static_cast<Eigen::Index>(size());
    m_matrix.resize(count, count);
    m_matrix.setFromTriplets(m_entries.begin(), m_entries.end());
    std::vector<Eigen::Triplet<double>>().swap(m_entries);
    m_scales.resize(count);
    for (Eigen::Index i = 0; i < count; ++i)
        m_scales[i] = m_jointStiffness[m_jointOf[static_cast<std::size_t>(i)]];
}

std::vector<Eigen::Vector3d> Equations::expand(const Eigen::VectorXd& unknowns) const
{
    std::vector<Eigen::Vector3d> displacements;
    displacements.reserve(m_numbers.size());
    for (const auto& numbers : m_numbers)
    {
        auto& displacement = displacements.emplace_back(Eigen::Vector3d::Zero());
        for (std::size_t i = 0; i < 3; ++i)
        {
            if (numbers[i] != s_none)
                displacement[static_cast<Eigen::Index>(i)] = unknowns[numbers[i]];
        }
    }
    return displacements;
}

void Equations::throwMechanism(Eigen::Index freeUnknown) const
{
    const Ztring& name = m_structure.getJoints()[m_jointOf[static_cast<std::size_t>(freeUnknown)]].name;
    Problem::throwProblem(fill(Translator::tr("The truss is a mechanism: node '%1' moves freely"), name));
}
} // namespace truss
