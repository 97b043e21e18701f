// SPDX-License-Identifier: MIT
// truss: exchange
#include "truss/exchange/numbertext.h"

#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/translator.h>

#include <array>
#include <charconv>
#include <cmath>

namespace truss
{
double NumberText::parse(const std::string& text)
{
    const char* const end = text.data() + text.size();
    const char* const begin = text.data() + (text.size() > 1 && text[0] == '+' && text[1] != '-' ? 1 : 0);
    double number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (stop != end || error == std::errc::invalid_argument)
        Problem::throwProblem(fill(Translator::tr("'%1' is not a number"), fromUtf8(text)));
    if (error == std::errc::result_out_of_range)
        Problem::throwProblem(fill(Translator::tr("'%1' is out of the range of finite numbers"), fromUtf8(text)));
    if (!std::isfinite(number))
        Problem::throwProblem(fill(Translator::tr("'%1' is not finite"), fromUtf8(text)));
    return number;
}

std::string NumberText::format(double number)
{
    std::array<char, 32> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number);
    return std::string(text.data(), written.ptr);
}
} // namespace truss
