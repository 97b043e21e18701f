// SPDX-License-Identifier: MIT
// truss: exchange
#pragma once

#include <string>

namespace truss
{
/// Numbers in files: always with a decimal point, whatever the locale.
class NumberText
{
public:
    NumberText() = delete;

    /// The number that is the whole text. One that is no number, or not a finite one, is a Problem that quotes it.
    static double parse(const std::string& text);

    /// The shortest text that parses to exactly this number.
    static std::string format(double number);
};
} // namespace truss
