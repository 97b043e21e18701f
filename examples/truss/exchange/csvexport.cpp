// SPDX-License-Identifier: MIT
// truss: exchange
#include "truss/exchange/csvexport.h"

#include "truss/exchange/numbertext.h"
#include "truss/model/bar.h"
#include "truss/model/load.h"
#include "truss/model/model.h"
#include "truss/model/node.h"
#include "truss/model/support.h"

#include <kel/file_kel.h>

#include <ostream>

namespace truss
{
namespace
{
using Words = std::vector<std::string>;

std::string getName(const Node* node)
{
    return node != nullptr ? node->getName().toUtf8() : std::string();
}

void append(const Vector& vector, Words& words)
{
    for (const double component : vector)
        words.push_back(NumberText::format(component));
}
} // namespace

CsvExport::CsvExport(std::ostream& out) : m_out(out), m_csv(Kel::File(Ztring())) {}

void CsvExport::write(const Model& model)
{
    // Kind by kind, since a line may only refer to nodes of earlier lines.
    model.forEach<Node>(
        [this](const Node& node)
        {
            Words words{"node", getName(&node)};
            append(node.getPosition(), words);
            writeLine(words);
        });
    model.forEach<Bar>(
        [this](const Bar& bar)
        {
            const Section& section = bar.getSection();
            writeLine({"bar", bar.getName().toUtf8(), getName(bar.getFrom()), getName(bar.getTo()),
                       NumberText::format(section.area), NumberText::format(section.modulus),
                       NumberText::format(section.density)});
        });
    model.forEach<Support>(
        [this](const Support& support)
        {
            Words words{"support", getName(support.getNode())};
            for (const bool held : support.getHeld())
                words.emplace_back(held ? "1" : "0");
            writeLine(words);
        });
    model.forEach<Load>(
        [this](const Load& load)
        {
            Words words{"load", getName(load.getNode())};
            append(load.getForce(), words);
            writeLine(words);
        });
}

void CsvExport::writeLine(const Words& words)
{
    for (const std::string& word : words)
        m_csv.writeElement(m_out, word);
    m_out << '\n';
}
} // namespace truss
