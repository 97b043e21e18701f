// SPDX-License-Identifier: MIT
// truss: exchange
#pragma once

#include <kel/ztring.h>

#include <Eigen/Core>

#include <iosfwd>

namespace truss
{
struct Response;

/// Writes the result of an analysis as CSV:
///
///     weight,VALUE
///     node,NAME,ux,uy,uz
///     bar,NAME,force,stress
///
/// Names with a comma, a quote or a space in them are quoted; all numbers read back exactly.
class ResultsWriter
{
public:
    explicit ResultsWriter(std::ostream& out) : m_out(out) {}

    void write(const Response& response);
    /// One line for each held node: reaction,NAME,Rx,Ry,Rz
    void writeReactions(const Response& response);

private:
    void writeLine(const char* kind, const Ztring& name, const Eigen::Ref<const Eigen::VectorXd>& numbers);

    std::ostream& m_out;
};
} // namespace truss
