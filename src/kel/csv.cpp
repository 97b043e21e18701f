// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/csv.h>

#include <istream>
#include <ostream>

namespace
{
constexpr char s_quote = '"';
constexpr char s_separator = ',';

// Quotes come in pairs: the third, fifth, ... of a field stands for itself.
bool isDoubledQuote(unsigned count)
{
    return count >= 3 && count % 2 == 1;
}
} // namespace

Csv::Csv(const Kel::File&) {}

void Csv::writeElement(std::ostream& out, const std::string& field) const
{
    std::string element(1, s_quote);
    for (const char c : field)
    {
        if (c == s_quote)
            element += s_quote;
        element += c;
    }
    element += s_quote;
    element += s_separator;
    out << element;
}

void Csv::readElement(std::istream& in, std::string& field) const
{
    bool insideQuotes = false;
    unsigned quotes = 0;
    for (char c; in.get(c);)
    {
        if (c == s_quote)
        {
            if (isDoubledQuote(++quotes))
                field += s_quote;
            insideQuotes = !insideQuotes;
            continue;
        }
        if (!insideQuotes && (c == '\n' || c == s_separator))
            return;
        if (insideQuotes || c != ' ')
            field += c;
    }
}
