// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/options.h"

#include "truss/model/text.h"

#include <kel/args.h>
#include <kel/problem.h>
#include <kel/translator.h>

namespace truss
{
namespace
{
void addHelp(Args& args)
{
    args.addHelp(Translator::tr("[-recover=<file>] put in its place and open what a save that did not end has left"));
    args.addHelp(Translator::tr("[-import=<file>] add a model from CSV"));
    args.addHelp(Translator::tr("[-script=<file>] run a script of edits"));
    args.addHelp(Translator::tr("[-check-mesh=<program>] pipe the model as CSV through a program and show its errors"));
    args.addHelp(Translator::tr("[-solve] find displacements, forces, stresses and reactions"));
    args.addHelp(Translator::tr("[-iterative] solve by iteration, for very large models"));
    args.addHelp(Translator::tr("[-save=<file>] save the model"));
    args.addHelp(Translator::tr("[-results=<file>] write weight, displacements, forces and stresses as CSV"));
    args.addHelp(Translator::tr("[-reactions=<file>] write the reactions of the supports as CSV"));
    args.addHelp(Translator::tr("[-picture=<file>] draw the truss as SVG"));
    args.addHelp(Translator::tr("[-view] show the picture on the desktop"));
    args.addHelp(Translator::tr("[-study=<bar>:<from>:<to>:<steps>] solve for several areas of a bar"));
    args.addHelp(Translator::tr("[-interleave] let the cases of the study take turns"));
    args.addHelp(Translator::tr("[-study-table=<file>] write the study as CSV"));
    args.addHelp(Translator::tr("[-study-plot=<file>] draw the study as a curve in SVG"));
    args.addHelp(Translator::tr("[-report=<address>] post a bug report with the model to a server"));
    args.addHelp(Translator::tr("[-bell] ring the terminal's bell at the end"));
    args.addHelp(Translator::tr("[-diagnostics] show size and duration of computations"));
}

bool takeFlag(Args& args, const std::string& name)
{
    const bool found = args.has(name);
    args.remove(name);
    return found;
}

Options::Text takeText(Args& args, const std::string& name)
{
    if (!args.has(name))
        return std::nullopt;
    const std::string value = args.get(name);
    args.remove(name);
    if (value.empty())
        Problem::throwProblem(fill(Translator::tr("Option %1 needs a value"), Ztring(name)));
    return value;
}

/// File names are UTF-8 also where the locale is not.
Options::File takeFile(Args& args, const std::string& name)
{
    const Options::Text bytes = takeText(args, name);
    if (!bytes)
        return std::nullopt;
    const Ztring path = fromUtf8(*bytes);
    return Kel::File(path.empty() ? Ztring(*bytes) : path);
}

[[noreturn]] void refuseSecondDocument(const Ztring& path)
{
    Problem::throwProblem(fill(Translator::tr("Only one document can be opened, not also '%1'"), path));
}

Options::File takeDocument(const Args& args)
{
    Array<Ztring> words;
    args.getRemaining(words);
    if (words.empty())
        return std::nullopt;
    if (words.size() > 1)
        refuseSecondDocument(words[1]);
    return Kel::File(words[0]);
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
    addHelp(args);
    Options options;
    options.help = args.has("-help");
    options.recover = takeFile(args, "-recover");
    options.import = takeFile(args, "-import");
    options.script = takeFile(args, "-script");
    options.checkMesh = takeText(args, "-check-mesh");
    options.solve = takeFlag(args, "-solve");
    options.iterative = takeFlag(args, "-iterative");
    options.save = takeFile(args, "-save");
    options.results = takeFile(args, "-results");
    options.reactions = takeFile(args, "-reactions");
    options.picture = takeFile(args, "-picture");
    options.view = takeFlag(args, "-view");
    options.study = takeText(args, "-study");
    options.interleave = takeFlag(args, "-interleave");
    options.studyTable = takeFile(args, "-study-table");
    options.studyPlot = takeFile(args, "-study-plot");
    options.report = takeText(args, "-report");
    options.bell = takeFlag(args, "-bell");
    options.diagnostics = takeFlag(args, "-diagnostics");
    args.checkHelpUnrecognized();
    options.document = takeDocument(args);
    if (options.document && options.recover)
        refuseSecondDocument(options.document->getPath());
    checkCombination(options);
    return options;
}
} // namespace truss
