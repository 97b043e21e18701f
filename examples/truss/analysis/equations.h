// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include "truss/analysis/structure.h"

#include <Eigen/SparseCore>

#include <array>
#include <cstddef>
#include <vector>

namespace truss
{
/// The equilibrium of a structure as a linear system: stiffness times displacements equals loads. Its unknowns are the
/// displacements in those directions in which the joints are not held.
class Equations
{
public:
    using Matrix = Eigen::SparseMatrix<double>;

    /// Numbers the unknowns. The structure outlives the equations.
    explicit Equations(const Structure& structure);

    /// Adds the stiffness of up to `count` further members; @return whether there are more.
    bool assemble(std::size_t count);
    std::size_t getAssembledCount() const { return m_assembled; }

    /// Makes the matrix of what was assembled; called once, after the last member.
    void finish();

    std::size_t size() const { return m_jointOf.size(); } ///< number of unknowns
    const Matrix& getMatrix() const { return m_matrix; }
    const Eigen::VectorXd& getLoads() const { return m_loads; }

    /// How stiff the joint of each unknown is altogether: the scale on which a pivot counts as zero.
    const Eigen::VectorXd& getScales() const { return m_scales; }

    /// The displacements of all joints, zero where they are held.
    std::vector<Eigen::Vector3d> expand(const Eigen::VectorXd& unknowns) const;

    /// Says that the structure is a mechanism and names the joint of an unknown that moves freely.
    [[noreturn]] void throwMechanism(Eigen::Index freeUnknown) const;

private:
    static constexpr int s_none = -1; ///< in place of a number: held, not an unknown

    void numberUnknowns();
    void assemble(const Structure::Member& member);
    void assembleBlock(std::size_t row, std::size_t column, const Eigen::Matrix3d& block);

    const Structure& m_structure;
    std::vector<std::array<int, 3>> m_numbers; ///< of the unknowns of each joint
    std::vector<std::size_t> m_jointOf;        ///< by unknown
    std::vector<Eigen::Triplet<double>> m_entries;
    std::vector<double> m_jointStiffness;
    std::size_t m_assembled = 0; ///< members
    Matrix m_matrix;
    Eigen::VectorXd m_loads;
    Eigen::VectorXd m_scales;
};
} // namespace truss
