// SPDX-License-Identifier: MIT
// What the tests of the example application's classes have in common.
#pragma once

#include <support/installed.h>
#include <support/problem.h>
#include <support/temporarydirectory.h>
#include <support/testlog.h>
#include <support/testplatform.h>
#include <support/teststatus.h>

#include "truss/document/document.h"
#include "truss/edits/importcommand.h"
#include "truss/exchange/csvexport.h"
#include "truss/exchange/csvimport.h"
#include "truss/model/bar.h"
#include "truss/model/load.h"
#include "truss/model/model.h"
#include "truss/model/node.h"
#include "truss/model/support.h"
#include "truss/script/editparser.h"

#include <kel/command.h>
#include <kel/interrupted.h>
#include <kel/stringtokenizer.h>

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

/// A document with verbs to fill, edit and look at it, on a platform of that class.
template <class Platform>
class TrussTestOn : public testing::Test
{
protected:
    /// Imports the lines, which have to be right.
    void import(const std::string& lines)
    {
        truss::CsvImport reading(document.getModel(), Kel::File(directory.write("import.csv", lines)));
        while (reading.readLines(1000))
            ;
        document.execute(reading.takeCommand());
    }

    /// Imports a file of the example's data folder.
    void importData(const std::string& name)
    {
        std::ifstream in(TRUSS_DATA "/" + name);
        import(std::string(std::istreambuf_iterator<char>(in), {}));
    }

    /// Executes one edit, written as in a script.
    void edit(const std::string& line) { document.execute(parse(line)); }

    std::unique_ptr<Command> parse(const std::string& line)
    {
        std::vector<std::string> words;
        for (StringTokenizer tokenizer(line, ' '); tokenizer.hasNext();)
            words.push_back(tokenizer.m_token);
        return truss::EditParser(document.getModel()).parse(words);
    }

    truss::Model& model() { return document.getModel(); }
    truss::Node& node(const char* name) { return model().getNode(name); }
    truss::Bar& bar(const char* name) { return model().getBar(name); }

    /// The whole model as text, for comparisons.
    static std::string toCsv(const truss::Model& shown)
    {
        std::ostringstream out;
        truss::CsvExport(out).write(shown);
        return out.str();
    }
    std::string toCsv() { return toCsv(model()); }

    /// The keys on the board with their bulletins.
    std::vector<std::pair<unsigned, Bulletin*>> entries() { return {model().begin(), model().end()}; }

    TestStatus status;
    Installed<Platform> platform;
    Installed<TestLog> log;
    TemporaryDirectory directory;
    truss::Document document;
};

using TrussTest = TrussTestOn<TestPlatform>;
