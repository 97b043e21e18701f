// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/options.h"

#include "truss/text/text.h"

#include <kel/args.h>
#include <kel/problem.h>
#include <kel/translator.h>

namespace truss
{
namespace
{
bool takeFlag(Args& args, const std::string& name, const Ztring& help)
{
    args.addHelp(help.str());
    const bool found = args.has(name);
    args.remove(name);
    return found;
}

Options::Text takeText(Args& args, const std::string& name, const Ztring& help)
{
    args.addHelp(help.str());
    if (!args.has(name))
        return std::nullopt;
    const std::string value = args.get(name);
    args.remove(name);
    if (value.empty())
        Problem::throwProblem(fill(Translator::tr("Option %1 needs a value"), Ztring(name)));
    return value;
}

/// File names are UTF-8 also where the locale is not.
Kel::File toFile(const std::string& bytes)
{
    const Ztring path = fromUtf8(bytes);
    return Kel::File(path.empty() ? Ztring(bytes) : path);
}

Options::File takeFile(Args& args, const std::string& name, const Ztring& help)
{
    const Options::Text bytes = takeText(args, name, help);
    return bytes ? Options::File(toFile(*bytes)) : std::nullopt;
}

[[noreturn]] void refuseSecondDocument(const Ztring& path)
{
    Problem::throwProblem(fill(Translator::tr("Only one document can be opened, not also '%1'"), path));
}

/// What is not an option; a "=" in it is no more than a character.
Options::File takeDocument(const Args& args)
{
    Array<Ztring> words;
    args.getRemaining(words);
    if (words.empty())
        return std::nullopt;
    if (words.size() > 1)
        refuseSecondDocument(words[1]);
    const std::string name = words[0].str();
    const std::string rest = args.has(name) ? args.get(name) : std::string();
    return toFile(rest.empty() ? name : name + '=' + rest);
}

void require(bool condition, const char* option, const char* other)
{
    if (!condition)
        Problem::throwProblem(fill(Translator::tr("Option %1 needs option %2"), Ztring(option), Ztring(other)));
}

void checkCombination(const Options& options)
{
    require(!options.view || options.picture, "-view", "-picture");
    require(!options.interleave || options.study, "-interleave", "-study");
    require(!options.studyTable || options.study, "-study-table", "-study");
    require(!options.studyPlot || options.study, "-study-plot", "-study");
}
} // namespace

Options Options::parse(Args& args)
{
    Options options;
    options.help = args.has("-help");
    options.recover =
        takeFile(args, "-recover",
                 Translator::tr("[-recover=<file>] put in its place and open what a save that did not end has left"));
    options.import = takeFile(args, "-import", Translator::tr("[-import=<file>] add a model from CSV"));
    options.script = takeFile(args, "-script", Translator::tr("[-script=<file>] run a script of edits"));
    options.checkMesh =
        takeText(args, "-check-mesh",
                 Translator::tr("[-check-mesh=<program>] pipe the model as CSV through a program and show its errors"));
    options.solve =
        takeFlag(args, "-solve", Translator::tr("[-solve] find displacements, forces, stresses and reactions"));
    options.iterative =
        takeFlag(args, "-iterative", Translator::tr("[-iterative] solve by iteration, for very large models"));
    options.save = takeFile(args, "-save", Translator::tr("[-save=<file>] save the model"));
    options.results = takeFile(
        args, "-results", Translator::tr("[-results=<file>] write weight, displacements, forces and stresses as CSV"));
    options.reactions =
        takeFile(args, "-reactions", Translator::tr("[-reactions=<file>] write the reactions of the supports as CSV"));
    options.picture = takeFile(args, "-picture", Translator::tr("[-picture=<file>] draw the truss as SVG"));
    options.view = takeFlag(args, "-view", Translator::tr("[-view] show the picture on the desktop"));
    options.study =
        takeText(args, "-study", Translator::tr("[-study=<bar>:<from>:<to>:<steps>] solve for several areas of a bar"));
    options.interleave =
        takeFlag(args, "-interleave", Translator::tr("[-interleave] let the cases of the study take turns"));
    options.studyTable = takeFile(args, "-study-table", Translator::tr("[-study-table=<file>] write the study as CSV"));
    options.studyPlot =
        takeFile(args, "-study-plot", Translator::tr("[-study-plot=<file>] draw the study as a curve in SVG"));
    options.report =
        takeText(args, "-report", Translator::tr("[-report=<address>] post a bug report with the model to a server"));
    options.bell = takeFlag(args, "-bell", Translator::tr("[-bell] ring the terminal's bell at the end"));
    options.diagnostics =
        takeFlag(args, "-diagnostics", Translator::tr("[-diagnostics] show size and duration of computations"));
    args.checkHelpUnrecognized();
    options.document = takeDocument(args);
    if (options.document && options.recover)
        refuseSecondDocument(options.document->getPath());
    checkCombination(options);
    return options;
}
} // namespace truss
