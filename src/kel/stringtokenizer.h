// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/array.h>
#include <kel/kelapi.h>

#include <cstddef>
#include <string>

/// Splits a line at a one-byte separator into its non-empty tokens.
///
///     StringTokenizer words("load,,run,", ',');
///     while (words.hasNext())
///         perform(words.m_token); // "load", then "run"
class KEL_API StringTokenizer
{
    std::string m_text;

public:
    /// The current token, valid after hasNext() has returned true.
    std::string m_token;

    StringTokenizer(const std::string& text, char separator);

    /// Makes the next non-empty token the current one; false when none is left.
    bool hasNext();

    /// Appends every non-empty token to `out`, in order.
    static void getAs(Array<std::string>& out, const std::string& text, char separator);

    /// Whether some non-empty token equals the word byte for byte.
    static bool find(const std::string& word, const std::string& text, char separator);

private:
    char m_separator;
    // Where the search for the next token starts; npos when the line is used up.
    std::size_t m_position;
};
