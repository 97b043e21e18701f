// SPDX-License-Identifier: MIT
// truss: script
#include "truss/script/editparser.h"

#include "truss/edits/addcommand.h"
#include "truss/edits/deletecommand.h"
#include "truss/edits/movecommand.h"
#include "truss/edits/sectioncommand.h"
#include "truss/exchange/entityfactory.h"
#include "truss/exchange/numbertext.h"
#include "truss/model/bar.h"
#include "truss/model/model.h"
#include "truss/model/node.h"
#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/translator.h>

#include <algorithm>
#include <array>

namespace truss
{
struct EditParser::Verb
{
    const char* name;
    std::size_t words; ///< 0: any number
    const char* usage;
    Edit (EditParser::*parse)(const Words& words) const;
};

std::unique_ptr<Command> EditParser::parse(const Words& words) const
{
    static const std::array<Verb, 5> s_verbs{{
        {"add", 0, "add KIND ...", &EditParser::parseAdd},
        {"move", 5, "move NODE x y z", &EditParser::parseMove},
        {"area", 3, "area BAR value", &EditParser::parseArea},
        {"modulus", 3, "modulus BAR value", &EditParser::parseModulus},
        {"delete", 2, "delete NAME", &EditParser::parseDelete},
    }};
    const std::string name = words.empty() ? std::string() : words.front();
    const auto* const verb =
        std::find_if(s_verbs.begin(), s_verbs.end(), [&](const Verb& v) { return v.name == name; });
    if (verb == s_verbs.end())
        Problem::throwProblem(fill(Translator::tr("Unknown edit '%1'"), fromUtf8(name)));
    if (verb->words != 0 && verb->words != words.size())
        Problem::throwProblem(fill(Translator::tr("Wrong number of words, expecting: %1"), Ztring(verb->usage)));
    return (this->*verb->parse)(words);
}

EditParser::Edit EditParser::parseAdd(const Words& words) const
{
    return std::make_unique<AddCommand>(m_model, EntityFactory(m_model).create({words.begin() + 1, words.end()}));
}

EditParser::Edit EditParser::parseMove(const Words& words) const
{
    const Vector position{NumberText::parse(words[2]), NumberText::parse(words[3]), NumberText::parse(words[4])};
    return std::make_unique<MoveCommand>(m_model, m_model.getNode(fromUtf8(words[1])), position);
}

EditParser::Edit EditParser::parseArea(const Words& words) const
{
    Bar& bar = m_model.getBar(fromUtf8(words[1]));
    Section section = bar.getSection();
    section.area = NumberText::parse(words[2]);
    return std::make_unique<SectionCommand>(m_model, bar, section,
                                            fill(Translator::tr("Change area of %1"), bar.getTitle()));
}

EditParser::Edit EditParser::parseModulus(const Words& words) const
{
    Bar& bar = m_model.getBar(fromUtf8(words[1]));
    Section section = bar.getSection();
    section.modulus = NumberText::parse(words[2]);
    return std::make_unique<SectionCommand>(m_model, bar, section,
                                            fill(Translator::tr("Change modulus of %1"), bar.getTitle()));
}

EditParser::Edit EditParser::parseDelete(const Words& words) const
{
    return std::make_unique<DeleteCommand>(m_model, m_model.getNamed(fromUtf8(words[1])));
}
} // namespace truss
