// SPDX-License-Identifier: MIT
// A command of little size.
#pragma once

#include <kel/command.h>
#include <kel/ztring.h>

#include <cstddef>

/// Counts up a number, which is the document.
class Count : public Command
{
public:
    explicit Count(std::size_t& document) : m_document(document) {}

    void execute() override { ++m_document; }
    void undo() override { --m_document; }
    Ztring getLabel() const override { return "count"; }

private:
    std::size_t& m_document;
};
