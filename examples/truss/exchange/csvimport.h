// SPDX-License-Identifier: MIT
// truss: exchange
#pragma once

#include "truss/exchange/entityfactory.h"

#include <kel/csv.h>
#include <kel/file_kel.h>

#include <fstream>
#include <memory>

namespace truss
{
class ImportCommand;

/// Reads a model from a CSV file, one entity a line; lines that begin with "#" and empty lines are skipped.
///
/// Reading only collects the new entities in a command. So nothing of a file with a bad line gets into the model, and
/// an import can be undone in one go.
///
///     CsvImport import(model, file);
///     while (import.readLines(1000))
///         ;
///     controller.execute(import.takeCommand().release());
class CsvImport
{
public:
    /// Opens the file; fails with the Problem of Kel::File::open. The model outlives the import.
    CsvImport(Model& model, const Kel::File& file);
    ~CsvImport();

    /// Reads up to `count` lines. A bad one is a Problem that names the file, the line number and what is wrong.
    /// @return whether there may be more lines.
    bool readLines(unsigned count);

    /// How far the import has come: up to 50, the other half being the command.
    int getPercent() const { return m_percent; }

    /// The command that adds what was read. It may be empty; an empty command cannot be executed.
    std::unique_ptr<ImportCommand> takeCommand();

private:
    void readLine(const std::string& line);
    std::vector<std::string> split(const std::string& line);
    void updatePercent();

    Model& m_model;
    Kel::File m_file;
    std::ifstream m_in;
    Csv m_csv;
    EntityFactory m_factory;
    std::unique_ptr<ImportCommand> m_command;
    unsigned m_lineNumber = 0;
    double m_fileSize = 0; // bytes
    int m_percent = 0;
};
} // namespace truss
