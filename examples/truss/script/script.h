// SPDX-License-Identifier: MIT
// truss: script
#pragma once

#include "truss/script/scriptline.h"
#include "truss/script/undoredolabels.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace Kel
{
class File;
}

namespace truss
{
class CompositeCommand;
class Document;

/// Runs a file of edits, one a line, and logs after each what can be undone and redone then:
///
///     move n1 0 0 10                any edit that EditParser knows
///     undo
///     redo
///     group                         the edits up to `end` are one command
///     end
///
/// Empty lines and lines that begin with "#" are skipped. A script stops at the first line that fails, with a Problem
/// that names the file and the line; the edits before it stay and can be undone. A group that fails leaves nothing.
class Script
{
public:
    /// Reads the whole file. The document outlives the script.
    Script(Document& document, const Kel::File& file);
    ~Script();

    /// Runs the next line; @return whether there are more.
    bool runLine();

    /// The part of the lines that has run, 0 to 100.
    int getPercent() const;

private:
    void readLines(const Kel::File& file);
    void run(const ScriptLine& line);
    void runEdit(const ScriptLine& line);
    void undo();
    void redo();
    void beginGroup();
    void endGroup();
    void checkEnd() const;

    bool isEnd(const ScriptLine& line) const;
    void requireNoGroup() const;
    void logLabels() const;

    Document& m_document;
    UndoRedoLabels m_labels;
    std::vector<ScriptLine> m_lines;
    std::size_t m_next = 0;
    std::unique_ptr<CompositeCommand> m_group; // null outside a group
};
} // namespace truss
