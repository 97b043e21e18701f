// SPDX-License-Identifier: MIT
// truss: exchange
#include "truss/exchange/resultswriter.h"

#include "truss/analysis/response.h"
#include "truss/exchange/numbertext.h"

#include <kel/texthelper.h>

#include <algorithm>
#include <ostream>

namespace truss
{
namespace
{
std::string quoteIfNeeded(std::string name)
{
    if (name.find_first_of(",\" ") == std::string::npos)
        return name;
    return '"' + TextHelper::replaceAll("\"", "\"\"", name) + '"';
}

bool isHeld(const Structure::Joint& joint)
{
    return std::any_of(joint.held.begin(), joint.held.end(), [](bool held) { return held; });
}
} // namespace

void ResultsWriter::write(const Response& response)
{
    m_out << "weight," << NumberText::format(response.structure.getWeight()) << '\n';
    const auto& joints = response.structure.getJoints();
    for (std::size_t i = 0; i < joints.size(); ++i)
        writeLine("node", joints[i].name, response.displacements[i]);
    const auto& members = response.structure.getMembers();
    for (std::size_t i = 0; i < members.size(); ++i)
        writeLine("bar", members[i].name, Eigen::Vector2d(response.forces[i], response.stresses[i]));
}

void ResultsWriter::writeReactions(const Response& response)
{
    const auto& joints = response.structure.getJoints();
    for (std::size_t i = 0; i < joints.size(); ++i)
    {
        if (isHeld(joints[i]))
            writeLine("reaction", joints[i].name, response.reactions[i]);
    }
}

void ResultsWriter::writeLine(const char* kind, const Ztring& name, const Eigen::Ref<const Eigen::VectorXd>& numbers)
{
    m_out << kind << ',' << quoteIfNeeded(name.toUtf8());
    for (const double number : numbers)
        m_out << ',' << NumberText::format(number);
    m_out << '\n';
}
} // namespace truss
