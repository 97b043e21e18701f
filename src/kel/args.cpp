// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/args.h>

#include <kel/emptystring_kel.h>
#include <kel/log_kel.h>
#include <kel/stringtokenizer.h>
#include <kel/translator.h>
#include <kel/zassert.h>

#include <ostream>
#include <sstream>

namespace
{
const char* const s_help = "-help";

bool isOption(const std::string& name)
{
    return name.starts_with('-');
}

void log(const Ztring& text, Message::Type type)
{
    Kel::Log::getSingleton()->append(text, type);
}
} // namespace

Args::Args(unsigned int argc, char** argv) : m_programName(argc > 0 ? argv[0] : Translator::tr("None").str())
{
    for (unsigned int i = 1; i < argc; ++i)
        add(argv[i]);
    const Ztring line = Translator::tr("[%1] usage message");
    line.argReplace(s_help);
    addHelp(line.str());
}

Args::Args(const std::string& line, char separator) : m_programName(Translator::tr("None").str())
{
    StringTokenizer words(line, separator);
    while (words.hasNext())
        add(words.m_token);
}

void Args::add(const std::string& word)
{
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos)
        m_args[word] = Kel::emptyString;
    else
        m_args[word.substr(0, equals)] = word.substr(equals + 1);
}

void Args::addHelp(const std::string& line)
{
    m_helpLines.push_back(line);
}

bool Args::has(const std::string& name) const
{
    return m_args.contains(name);
}

const std::string& Args::get(const std::string& name) const
{
    const auto findIt = m_args.find(name);
    KEL_ASSERT(findIt != m_args.end(), "findIt != m_args.end()");
    return findIt->second;
}

bool Args::matches(const std::string& name, const std::string& value) const
{
    const auto findIt = m_args.find(name);
    return findIt != m_args.end() && findIt->second == value;
}

void Args::remove(const std::string& name)
{
    m_args.erase(name);
}

void Args::getRemaining(Array<Ztring>& out) const
{
    for (const auto& [name, value] : m_args)
        out.push_back(name);
}

bool Args::checkUnrecognized()
{
    const Ztring pattern = Translator::tr("Unrecognized option: %1");
    Ztring message;
    for (const auto& [name, value] : m_args)
    {
        if (!isOption(name))
            continue;
        const Ztring line(pattern); // NOLINT(performance-unnecessary-copy-initialization): filled, though const
        line.argReplace(name);
        message.append(line);
        if (!value.empty())
            message.append("=").append(value);
        message.append("\n");
    }
    if (message.empty())
        return false;
    // Only now that the whole message is there: no option goes unreported.
    std::erase_if(m_args, [](const auto& entry) { return isOption(entry.first); });
    log(message, Message::Warning);
    return true;
}

void Args::presentHelp(std::ostream& out) const
{
    const Ztring usage = Translator::tr("Usage: %1 [options] [<startup file>]");
    usage.argReplace(m_programName);
    out << usage << "\n\n" << Translator::tr("Options:") << "\n";
    for (const std::string& line : m_helpLines)
        out << line << "\n";
}

void Args::checkHelpUnrecognized()
{
    const bool isHelpWanted = has(s_help);
    remove(s_help);
    const bool isAnyUnrecognized = checkUnrecognized();
    if (!isHelpWanted && !isAnyUnrecognized)
        return;
    std::ostringstream out;
    presentHelp(out);
    log(out.str(), Message::Info);
}
