// SPDX-License-Identifier: MIT
// truss: script
#include "truss/script/script.h"

#include "truss/document/document.h"
#include "truss/edits/compositecommand.h"
#include "truss/model/model.h"
#include "truss/script/editparser.h"
#include "truss/script/groupededit.h"
#include "truss/text/text.h"

#include <kel/commandcontroller.h>
#include <kel/dynamicfactory.h>
#include <kel/file_kel.h>
#include <kel/log_kel.h>
#include <kel/problem.h>
#include <kel/stringtokenizer.h>
#include <kel/texthelper.h>
#include <kel/translator.h>

#include <fstream>
#include <utility>

namespace truss
{
namespace
{
std::vector<std::string> split(std::string line)
{
    TextHelper::replaceAll("\t", " ", line);
    std::vector<std::string> words;
    for (StringTokenizer tokenizer(TextHelper::trimWhitespace(line), ' '); tokenizer.hasNext();)
        words.push_back(tokenizer.m_token);
    return words;
}
} // namespace

Script::Script(Document& document, const Kel::File& file)
    : m_document(document),
      m_labels(DynamicFactory::getSingleton().getOrCreate<CommandController>())
{
    readLines(file);
}

Script::~Script() = default;

void Script::readLines(const Kel::File& file)
{
    std::ifstream in;
    file.open(in);
    std::string text;
    for (unsigned number = 1; std::getline(in, text); ++number)
    {
        ScriptLine line{fill(Translator::tr("%1, line %2"), file.getPath(), toText(number)), split(text)};
        if (!line.words.empty() && line.words.front().front() != '#')
            m_lines.push_back(std::move(line));
    }
    if (in.bad())
        file.throwReadingCorrupt();
}

bool Script::runLine()
{
    if (m_next < m_lines.size())
    {
        const ScriptLine& line = m_lines[m_next++];
        if (isEnd(line))
            endGroup(); // the edits of the group say their own places
        else
            run(line);
    }
    if (m_next < m_lines.size())
        return true;
    checkEnd();
    return false;
}

int Script::getPercent() const
{
    return m_lines.empty() ? 100 : static_cast<int>(100 * m_next / m_lines.size());
}

void Script::run(const ScriptLine& line)
try
{
    const std::string& verb = line.words.front();
    if (verb == "undo")
        undo();
    else if (verb == "redo")
        redo();
    else if (verb == "group")
        beginGroup();
    else
        runEdit(line);
}
catch (Problem& problem)
{
    problem.annotate(line.place);
    throw;
}

void Script::runEdit(const ScriptLine& line)
{
    if (m_group != nullptr)
    {
        m_group->add(new GroupedEdit(m_document.getModel(), line));
        return;
    }
    m_document.execute(EditParser(m_document.getModel()).parse(line.words));
    logLabels();
}

void Script::undo()
{
    requireNoGroup();
    m_document.undo();
    logLabels();
}

void Script::redo()
{
    requireNoGroup();
    m_document.redo();
    logLabels();
}

void Script::beginGroup()
{
    requireNoGroup();
    m_group = std::make_unique<CompositeCommand>(Translator::tr("Group of edits"));
}

void Script::endGroup()
{
    auto group = std::move(m_group);
    if (!group->isEmpty())
        m_document.execute(std::move(group));
    logLabels();
}

void Script::checkEnd() const
{
    if (m_group != nullptr)
        Problem::throwProblem(Translator::tr("The script ends within a group"));
}

bool Script::isEnd(const ScriptLine& line) const
{
    return m_group != nullptr && line.words.size() == 1 && line.words.front() == "end";
}

void Script::requireNoGroup() const
{
    if (m_group != nullptr)
        Problem::throwProblem(Translator::tr("This is not possible within a group"));
}

void Script::logLabels() const
{
    Kel::Log::getSingleton()->append(m_labels.getText(), Message::Info);
}
} // namespace truss
