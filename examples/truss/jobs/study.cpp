// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/study.h"

#include "truss/analysis/response.h"
#include "truss/exchange/numbertext.h"
#include "truss/text/text.h"

#include <kel/array.h>
#include <kel/problem.h>
#include <kel/stringtokenizer.h>
#include <kel/translator.h>

#include <cmath>

namespace truss
{
namespace
{
constexpr double mostSteps = 10000;
constexpr std::size_t mostAtATime = 4;

std::size_t parseSteps(const std::string& text)
{
    const double steps = NumberText::parse(text);
    if (steps != std::floor(steps) || steps < 2 || steps > mostSteps)
        Problem::throwProblem(
            fill(Translator::tr("A study takes 2 to %1 steps, not %2"), toText(mostSteps), fromUtf8(text)));
    return static_cast<std::size_t>(steps);
}

double parseArea(const std::string& text)
{
    const double area = NumberText::parse(text);
    if (area <= 0)
        Problem::throwProblem(fill(Translator::tr("The area '%1' is not positive"), fromUtf8(text)));
    return area;
}
} // namespace

Study::Study(const std::string& text)
{
    Array<std::string> words;
    StringTokenizer::getAs(words, text, ':');
    if (words.size() != 4)
        Problem::throwProblem(fill(Translator::tr("A study is asked for as %1"), Ztring("BAR:from:to:steps")));
    m_bar = fromUtf8(words[0]);
    const double from = parseArea(words[1]);
    const double to = parseArea(words[2]);
    m_rows.resize(parseSteps(words[3]));
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        m_rows[i].area = std::lerp(from, to, static_cast<double>(i) / static_cast<double>(m_rows.size() - 1));
}

void Study::setResult(std::size_t row, const Response& response)
{
    Row& result = m_rows[row];
    result.weight = response.structure.getWeight();
    result.displacement = std::abs(response.findLargestDisplacement().value);
    result.stress = response.stresses[response.structure.findMember(m_bar)];
}

bool Study::begin()
{
    if (m_begun - m_ended >= mostAtATime)
        return false;
    ++m_begun;
    return true;
}

void Study::noteEnd(bool failed)
{
    ++m_ended;
    m_failed |= failed;
}
} // namespace truss
