// SPDX-License-Identifier: MIT
// truss: analysis
#pragma once

#include <Eigen/SparseCore>

#include <optional>

namespace truss
{
class Equations;

/// Solves equations by factorizing their matrix. It has copies of all that it needs and uses nothing of the library, so
/// that it can be performed on a thread of its own and outlive whoever asked for it.
class Factorization
{
public:
    explicit Factorization(const Equations& equations);

    /// Does all of the work; called once.
    void perform();

    /// The solution, unless there is a free unknown.
    const Eigen::VectorXd& getUnknowns() const { return m_unknowns; }
    /// In a mechanism the unknown that moves farthest, otherwise nothing.
    const std::optional<Eigen::Index>& getFreeUnknown() const { return m_freeUnknown; }

private:
    Eigen::SparseMatrix<double> m_matrix;
    Eigen::VectorXd m_loads;
    Eigen::VectorXd m_scales;
    Eigen::VectorXd m_unknowns;
    std::optional<Eigen::Index> m_freeUnknown;
};
} // namespace truss
