// SPDX-License-Identifier: MIT
// Command lines against a model: what is parsed, joined and parsed again is equal, and every word is reported once.
#include <kel/args.h>
#include <kel/stringtokenizer.h>

#include "support/fuzzing.h"
#include "support/installed.h"
#include "support/testlog.h"

#include <algorithm>
#include <clocale>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace
{
using Model = std::map<std::string, std::string>;

Model parse(const std::vector<std::string>& words)
{
    Model model;
    for (const std::string& word : words)
    {
        const std::size_t equals = word.find('=');
        model[word.substr(0, equals)] = equals == std::string::npos ? "" : word.substr(equals + 1);
    }
    return model;
}

std::vector<std::string> split(const std::string& line, char separator)
{
    std::vector<std::string> words;
    StringTokenizer tokens(line, separator);
    while (tokens.hasNext())
        words.push_back(tokens.m_token);
    return words;
}

std::string join(const Model& model, char separator)
{
    std::string line;
    for (const auto& [name, value] : model)
        line += name + (name.empty() || !value.empty() ? "=" : "") + value + separator;
    return line;
}

Args parseWords(std::vector<std::string>& words)
{
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    return Args(static_cast<unsigned>(pointers.size()), pointers.data());
}

void expectEqual(const Args& args, const Model& model)
{
    EXPECT_PROPERTY(args.size() == model.size() && args.empty() == model.empty());
    for (const auto& [name, value] : model)
    {
        EXPECT_PROPERTY(args.has(name) && args.get(name) == value && args.matches(name, value));
        EXPECT_PROPERTY(!args.matches(name, value + "="));
    }
    Array<Ztring> names;
    args.getRemaining(names);
    const auto isName = [](const Ztring& name, const Model::value_type& entry) { return name == Ztring(entry.first); };
    EXPECT_PROPERTY(std::equal(names.begin(), names.end(), model.begin(), model.end(), isName));
}

/// The words that are options are removed and reported in one message, which ends the usage text likewise.
void expectReported(Args args, Model model)
{
    static Installed<TestLog> log;
    log->messages.clear();
    Ztring warning;
    bool isReported = model.erase("-help") > 0;
    for (auto entry = model.begin(); entry != model.end();)
    {
        if (!entry->first.starts_with('-'))
        {
            ++entry;
            continue;
        }
        Ztring line("Unrecognized option: %1");
        line.argReplace(entry->first);
        warning += line;
        if (!entry->second.empty())
            warning.append("=").append(entry->second);
        warning += "\n";
        entry = model.erase(entry);
    }
    args.checkHelpUnrecognized();
    expectEqual(args, model);
    isReported = isReported || !warning.empty();
    EXPECT_PROPERTY(log->messages.size() == (isReported ? 1u : 0u) + (warning.empty() ? 0u : 1u));
    EXPECT_PROPERTY(warning.empty() || log->messages[0] == std::pair(Message::Warning, warning.toUtf8()));
    std::ostringstream usage;
    args.presentHelp(usage);
    EXPECT_PROPERTY(!isReported || log->messages.back() == std::pair(Message::Info, Ztring(usage.str()).toUtf8()));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const char* const locale = std::setlocale(LC_ALL, "C.UTF-8");
    EXPECT_PROPERTY(locale);
    Input input(data, size);
    const char separator = input.takeByte();
    const std::string line = input.takeRest();

    std::vector<std::string> words = split(line, separator);
    const Model model = parse(words);
    const Args args(line, separator);
    expectEqual(args, model);
    if (separator != '=')
        expectEqual(Args(join(model, separator), separator), model);
    expectReported(args, model);

    // Words of a command line end at a NUL.
    for (std::string& word : words)
        word = word.c_str();
    words.insert(words.begin(), "program");
    const Model wordsModel = parse({words.begin() + 1, words.end()});
    Args wordsArgs = parseWords(words);
    expectEqual(wordsArgs, wordsModel);
    expectReported(wordsArgs, wordsModel);
    for (const auto& [name, value] : wordsModel)
        wordsArgs.remove(name);
    EXPECT_PROPERTY(wordsArgs.empty());
    return 0;
}
