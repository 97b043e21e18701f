// SPDX-License-Identifier: MIT
// truss: script
#pragma once

#include <memory>
#include <string>
#include <vector>

class Command;

namespace truss
{
class Model;

/// Makes the command that a line of a script asks for:
///
///     add KIND ...                  as EntityFactory has it
///     move NODE x y z
///     area BAR value
///     modulus BAR value
///     delete NAME
class EditParser
{
public:
    /// The model outlives the parser and its commands.
    explicit EditParser(Model& model) : m_model(model) {}

    /// A command that is ready to be executed; an edit that must not be is a Problem.
    std::unique_ptr<Command> parse(const std::vector<std::string>& words) const;

private:
    using Words = std::vector<std::string>;
    using Edit = std::unique_ptr<Command>;
    struct Verb;

    Edit parseAdd(const Words& words) const;
    Edit parseMove(const Words& words) const;
    Edit parseArea(const Words& words) const;
    Edit parseModulus(const Words& words) const;
    Edit parseDelete(const Words& words) const;

    Model& m_model;
};
} // namespace truss
