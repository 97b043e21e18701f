// SPDX-License-Identifier: MIT
// truss: analysis
#include "truss/analysis/structure.h"

#include "truss/model/bar.h"
#include "truss/model/load.h"
#include "truss/model/model.h"
#include "truss/model/node.h"
#include "truss/model/support.h"
#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/translator.h>

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace truss
{
namespace
{
Eigen::Vector3d toEigen(const Vector& vector)
{
    return {vector[0], vector[1], vector[2]};
}
} // namespace

Structure::Structure(const Model& model)
{
    std::unordered_map<const Node*, std::size_t> indices;
    model.forEach<Node>(
        [&](const Node& node)
        {
            indices.emplace(&node, m_joints.size());
            m_joints.push_back({node.getName(), toEigen(node.getPosition()), {}, Eigen::Vector3d::Zero()});
        });
    model.forEach<Bar>(
        [&](const Bar& bar) {
            m_members.push_back({bar.getName(), indices.at(bar.getFrom()), indices.at(bar.getTo()), bar.getSection()});
        });
    model.forEach<Support>([&](const Support& support)
                           { m_joints[indices.at(support.getNode())].held = support.getHeld(); });
    model.forEach<Load>([&](const Load& load)
                        { m_joints[indices.at(load.getNode())].force += toEigen(load.getForce()); });
}

Eigen::Vector3d Structure::getAxis(const Member& member) const
{
    return m_joints[member.to].position - m_joints[member.from].position;
}

double Structure::getLength(const Member& member) const
{
    return getAxis(member).stableNorm();
}

double Structure::getStiffness(const Member& member) const
{
    return member.section.modulus * member.section.area / getLength(member);
}

double Structure::getWeight() const
{
    return std::accumulate(m_members.begin(), m_members.end(), 0.0,
                           [this](double weight, const Member& member)
                           { return weight + member.section.density * member.section.area * getLength(member); });
}

std::size_t Structure::findMember(const Ztring& name) const
{
    const auto found =
        std::find_if(m_members.begin(), m_members.end(), [&](const Member& member) { return member.name == name; });
    if (found == m_members.end())
        Problem::throwProblem(fill(Translator::tr("There is no bar named '%1'"), name));
    return static_cast<std::size_t>(found - m_members.begin());
}
} // namespace truss
