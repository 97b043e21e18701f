// SPDX-License-Identifier: MIT
// truss: exchange
#include "truss/exchange/csvimport.h"

#include "truss/edits/addstep.h"
#include "truss/edits/importcommand.h"
#include "truss/model/model.h"
#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/texthelper.h>
#include <kel/translator.h>

#include <sstream>

namespace truss
{
namespace
{
/// Csv drops spaces outside quotes, which would make one number of two.
void checkSpaces(const std::string& line)
{
    bool isQuoted = false;
    bool isInField = false;
    bool hadSpace = false;
    for (const char c : line)
    {
        if (c == '"')
            isQuoted = !isQuoted;
        const bool isSpace = c == ' ' && !isQuoted;
        if (c == ',' && !isQuoted)
            isInField = hadSpace = false;
        else if (isSpace)
            hadSpace = isInField;
        else if (hadSpace)
            Problem::throwProblem(Translator::tr("A field with a space in it has to stand between quotes"));
        else
            isInField = true;
    }
}
} // namespace

CsvImport::CsvImport(Model& model, const Kel::File& file)
    : m_model(model),
      m_file(file),
      m_csv(file),
      m_factory(model),
      m_command(std::make_unique<ImportCommand>(fill(Translator::tr("Import '%1'"), file.getFileName())))
{
    m_file.open(m_in);
    m_in.seekg(0, std::ios::end);
    m_fileSize = static_cast<double>(m_in.tellg());
    m_in.seekg(0);
    m_in.clear(); // what cannot be positioned in, such as a pipe, is read without a percentage
}

CsvImport::~CsvImport() = default;

bool CsvImport::readLines(unsigned count)
{
    std::string line;
    for (unsigned i = 0; i < count; ++i)
    {
        if (!std::getline(m_in, line))
            break;
        ++m_lineNumber;
        readLine(line);
    }
    if (m_in.bad())
        m_file.throwReadingCorrupt();
    updatePercent();
    return m_in.good();
}

void CsvImport::readLine(const std::string& line)
try
{
    const std::string text = TextHelper::trimWhitespace(line);
    if (text.empty() || text.front() == '#')
        return;
    checkSpaces(text);
    m_command->add(new AddStep(m_model, m_factory.create(split(text))));
}
catch (Problem& problem)
{
    problem.annotate(fill(Translator::tr("%1, line %2"), m_file.getPath(), toText(m_lineNumber)));
    throw;
}

// Csv has no notion of lines, so each line is a stream of its own.
std::vector<std::string> CsvImport::split(const std::string& line)
{
    std::istringstream in(line);
    std::vector<std::string> words;
    while (in.peek() != std::istringstream::traits_type::eof())
        m_csv.readElement(in, words.emplace_back());
    return words;
}

void CsvImport::updatePercent()
{
    if (m_in.good() && m_fileSize > 0)
        m_percent = static_cast<int>(50 * static_cast<double>(m_in.tellg()) / m_fileSize);
}

std::unique_ptr<ImportCommand> CsvImport::takeCommand()
{
    return std::move(m_command);
}
} // namespace truss
