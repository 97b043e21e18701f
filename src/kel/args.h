// SPDX-License-Identifier: MIT
// libkel: Application services
#pragma once

#include <kel/array.h>
#include <kel/ztring.h>

#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>

/// The program's command-line options, queried and consumed one by one.
///
/// What nobody consumed is reported at the end. The one option known here is "-help".
///
///     Args args(argc, argv);
///     args.addHelp("[-mesh=<file>] mesh to open");
///     if (args.has("-mesh"))
///         open(args.get("-mesh"));
///     args.remove("-mesh");
///     args.checkHelpUnrecognized();
///     Array<Ztring> words;
///     args.getRemaining(words); // what is not an option, such as the startup file
class KEL_API Args
{
public:
    /// Takes the program's name from the first word (the translated "None" when there is none), the options from the
    /// others, and starts the help with the line of "-help".
    Args(unsigned int argc, char** argv);

    /// Takes the options from the non-empty words of a line. The program's name is the translated "None" and there is
    /// no help line.
    Args(const std::string& line, char separator);

    /// Enters a word: name and value around its first "=", or a name with an empty value. A later word of the same
    /// name overwrites the value. A word need not begin with "-".
    void add(const std::string& word);

    /// Appends a line of the usage text, as it is to be printed.
    void addHelp(const std::string& line);

    /// @name Consuming
    /// Names keep their leading "-", as typed.
    /// @{

    bool has(const std::string& name) const;

    /// The value of an option, empty for one without. It stays valid until the option is removed or added again. An
    /// absent name fails the assertion "findIt != m_args.end()".
    const std::string& get(const std::string& name) const;

    /// Whether the option is present with exactly this value.
    bool matches(const std::string& name, const std::string& value) const;

    /// Marks an option as consumed; absent ones are ignored.
    void remove(const std::string& name);

    /// How many words are left.
    std::size_t size() const { return m_args.size(); }
    bool empty() const { return m_args.empty(); }

    /// @}
    /// @name Reporting
    /// @{

    /// Appends the names, in byte order, of everything that is left.
    void getRemaining(Array<Ztring>& out) const;

    /// Removes the words that begin with "-" and logs them, one line each, as one warning. Returns whether there were
    /// any.
    bool checkUnrecognized();

    /// Writes the usage text.
    void presentHelp(std::ostream& out) const;

    /// Consumes "-help", reports what is unrecognized, and in either case logs the usage text as one message. To be
    /// called when the options are consumed.
    void checkHelpUnrecognized();

    /// @}

private:
    std::string m_programName;
    std::map<std::string, std::string> m_args;
    Array<std::string> m_helpLines;
};
