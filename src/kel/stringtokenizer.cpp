// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/stringtokenizer.h>

StringTokenizer::StringTokenizer(const std::string& text, char separator)
    : m_text(text),
      m_separator(separator),
      m_position(text.empty() ? std::string::npos : 0)
{
}

bool StringTokenizer::hasNext()
{
    m_token.clear();
    while (m_token.empty())
    {
        if (m_position == std::string::npos)
            return false;
        const std::size_t end = m_text.find(m_separator, m_position);
        m_token.assign(m_text, m_position, end - m_position);
        m_position = end == std::string::npos ? end : end + 1;
    }
    return true;
}

void StringTokenizer::getAs(Array<std::string>& out, const std::string& text, char separator)
{
    StringTokenizer tokens(text, separator);
    while (tokens.hasNext())
        out.push_back(tokens.m_token);
}

bool StringTokenizer::find(const std::string& word, const std::string& text, char separator)
{
    StringTokenizer tokens(text, separator);
    while (tokens.hasNext())
        if (tokens.m_token == word)
            return true;
    return false;
}
