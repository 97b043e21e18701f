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
    args.addHelp(Translator::tr("[-import=<file>] add a model from CSV"));
    args.addHelp(Translator::tr("[-script=<file>] run a script of edits"));
    args.addHelp(Translator::tr("[-solve] find displacements, forces, stresses and reactions"));
    args.addHelp(Translator::tr("[-iterative] solve by iteration, for very large models"));
    args.addHelp(Translator::tr("[-save=<file>] save the model"));
    args.addHelp(Translator::tr("[-results=<file>] write weight, displacements, forces and stresses as CSV"));
    args.addHelp(Translator::tr("[-reactions=<file>] write the reactions of the supports as CSV"));
    args.addHelp(Translator::tr("[-picture=<file>] draw the truss as SVG"));
}

bool takeFlag(Args& args, const std::string& name)
{
    const bool found = args.has(name);
    args.remove(name);
    return found;
}

/// File names are UTF-8 also where the locale is not.
Kel::File toFile(const std::string& bytes)
{
    const Ztring text = fromUtf8(bytes);
    return Kel::File(text.empty() ? Ztring(bytes) : text);
}

std::optional<Kel::File> takeFile(Args& args, const std::string& name)
{
    if (!args.has(name))
        return std::nullopt;
    const std::string value = args.get(name);
    args.remove(name);
    if (value.empty())
        Problem::throwProblem(fill(Translator::tr("Option %1 needs a file name"), Ztring(name)));
    return toFile(value);
}

std::optional<Kel::File> takeDocument(const Args& args)
{
    Array<Ztring> words;
    args.getRemaining(words);
    if (words.empty())
        return std::nullopt;
    if (words.size() > 1)
        Problem::throwProblem(fill(Translator::tr("Only one document can be opened, not also '%1'"), words[1]));
    return Kel::File(words[0]);
}
} // namespace

Options Options::parse(Args& args)
{
    addHelp(args);
    Options options;
    options.help = args.has("-help");
    options.import = takeFile(args, "-import");
    options.script = takeFile(args, "-script");
    options.solve = takeFlag(args, "-solve");
    options.iterative = takeFlag(args, "-iterative");
    options.save = takeFile(args, "-save");
    options.results = takeFile(args, "-results");
    options.reactions = takeFile(args, "-reactions");
    options.picture = takeFile(args, "-picture");
    args.checkHelpUnrecognized();
    options.document = takeDocument(args);
    return options;
}
} // namespace truss
