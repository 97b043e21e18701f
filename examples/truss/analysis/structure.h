// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include "truss/model/section.h"

#include <kel/ztring.h>

#include <Eigen/Core>

#include <array>
#include <cstddef>
#include <vector>

namespace truss
{
class Model;

/// What the analysis sees of a model: plain numbers, nodes by index. It is a copy, so that an edit made while an
/// analysis is under way cannot touch it, and a study can vary it without touching the model.
class Structure
{
public:
    struct Joint
    {
        Ztring name;
        Eigen::Vector3d position;
        std::array<bool, 3> held;
        Eigen::Vector3d force; ///< all loads on it
    };

    struct Member
    {
        Ztring name;
        std::size_t from; ///< index of a joint
        std::size_t to;
        Section section;
    };

    explicit Structure(const Model& model);

    const std::vector<Joint>& getJoints() const { return m_joints; }
    const std::vector<Member>& getMembers() const { return m_members; }

    Eigen::Vector3d getAxis(const Member& member) const; ///< from its first joint to its second
    double getLength(const Member& member) const;
    double getStiffness(const Member& member) const; ///< force for each unit of elongation
    double getWeight() const;

    /// The index of the member of that name, which must exist; otherwise a Problem.
    std::size_t findMember(const Ztring& name) const;
    void setArea(std::size_t member, double area) { m_members[member].section.area = area; }

private:
    std::vector<Joint> m_joints;
    std::vector<Member> m_members;
};
} // namespace truss
