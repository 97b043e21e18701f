// SPDX-License-Identifier: MIT
// truss: exchange
#pragma once

#include <kel/csv.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace truss
{
class Model;

/// Writes a model as CSV that CsvImport reads back as the same model, every number exactly.
class CsvExport
{
public:
    explicit CsvExport(std::ostream& out);

    void write(const Model& model);

private:
    void writeLine(const std::vector<std::string>& words);

    std::ostream& m_out;
    Csv m_csv;
};
} // namespace truss
