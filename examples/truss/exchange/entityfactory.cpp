// SPDX-License-Identifier: MIT
// truss: exchange
#include "truss/exchange/entityfactory.h"

#include "truss/exchange/numbertext.h"
#include "truss/model/bar.h"
#include "truss/model/load.h"
#include "truss/model/model.h"
#include "truss/model/node.h"
#include "truss/model/support.h"
#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/translator.h>

#include <algorithm>
#include <array>

namespace truss
{
struct EntityFactory::Kind
{
    const char* name;
    std::size_t fewest; ///< words, the kind included
    std::size_t most;
    const char* usage;
    BulletinPtr<Entity> (EntityFactory::*create)(const Words& words);
};

namespace
{
Vector parseVector(const std::vector<std::string>& words, std::size_t first)
{
    return {NumberText::parse(words[first]), NumberText::parse(words[first + 1]), NumberText::parse(words[first + 2])};
}

bool parseHeld(const std::string& word)
{
    if (word != "0" && word != "1")
        Problem::throwProblem(fill(Translator::tr("'%1' is neither 1 (held) nor 0 (free)"), fromUtf8(word)));
    return word == "1";
}
} // namespace

EntityFactory::EntityFactory(const Model& model) : m_model(model) {}

BulletinPtr<Entity> EntityFactory::create(const Words& words)
{
    const Kind& kind = getKind(words.empty() ? std::string() : words.front());
    if (words.size() < kind.fewest || words.size() > kind.most)
        Problem::throwProblem(fill(Translator::tr("Wrong number of fields, expecting: %1"), Ztring(kind.usage)));
    return (this->*kind.create)(words);
}

const EntityFactory::Kind& EntityFactory::getKind(const std::string& name)
{
    static const std::array<Kind, 4> s_kinds{{
        {"node", 5, 5, "node,NAME,x,y,z", &EntityFactory::createNode},
        {"bar", 6, 7, "bar,NAME,NODE,NODE,area,modulus[,density]", &EntityFactory::createBar},
        {"support", 5, 5, "support,NODE,h,h,h", &EntityFactory::createSupport},
        {"load", 5, 5, "load,NODE,Fx,Fy,Fz", &EntityFactory::createLoad},
    }};
    const auto* const found =
        std::find_if(s_kinds.begin(), s_kinds.end(), [&](const Kind& kind) { return kind.name == name; });
    if (found == s_kinds.end())
        Problem::throwProblem(fill(Translator::tr("Unknown kind '%1'"), fromUtf8(name)));
    return *found;
}

BulletinPtr<Entity> EntityFactory::createNode(const Words& words)
{
    BulletinPtr<Node> node(new Node(getNewName(words[1]), parseVector(words, 2)));
    m_made.emplace(node->getName().toUtf8(), node.get());
    return node;
}

BulletinPtr<Entity> EntityFactory::createBar(const Words& words)
{
    const Ztring name = getNewName(words[1]);
    Node& from = getNode(words[2]);
    Node& to = getNode(words[3]);
    Bar::checkLength(name, from.getPosition(), to.getPosition());
    const Section section{NumberText::parse(words[4]), NumberText::parse(words[5]),
                          words.size() > 6 ? NumberText::parse(words[6]) : 0};
    Bar::checkSection(name, section);

    BulletinPtr<Bar> bar(new Bar(name, from, to, section));
    m_made.emplace(bar->getName().toUtf8(), bar.get());
    return bar;
}

BulletinPtr<Entity> EntityFactory::createSupport(const Words& words)
{
    Node& node = getNode(words[1]);
    const Support::Held held{parseHeld(words[2]), parseHeld(words[3]), parseHeld(words[4])};
    if (!m_hasLooked)
        m_model.forEach<Support>([this](const Support& support) { m_supported.insert(support.getNode()); });
    m_hasLooked = true;
    if (!m_supported.insert(&node).second)
        Problem::throwProblem(fill(Translator::tr("Node '%1' has a support already"), node.getName()));
    return BulletinPtr<Entity>(new Support(node, held));
}

BulletinPtr<Entity> EntityFactory::createLoad(const Words& words)
{
    return BulletinPtr<Entity>(new Load(getNode(words[1]), parseVector(words, 2)));
}

NamedEntity* EntityFactory::find(const Ztring& name) const
{
    const auto made = m_made.find(name.toUtf8());
    return made != m_made.end() ? made->second : m_model.find(name);
}

Node& EntityFactory::getNode(const std::string& word) const
{
    const Ztring name = fromUtf8(word);
    auto* const node = dynamic_cast<Node*>(find(name));
    if (node == nullptr)
        Problem::throwProblem(fill(Translator::tr("There is no node named '%1'"), name));
    return *node;
}

Ztring EntityFactory::getNewName(const std::string& word) const
{
    Ztring name = fromUtf8(word);
    NamedEntity::checkName(name);
    if (find(name) != nullptr)
        Problem::throwProblem(fill(Translator::tr("The name '%1' is already used"), name));
    return name;
}
} // namespace truss
