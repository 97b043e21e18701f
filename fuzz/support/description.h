// SPDX-License-Identifier: MIT
// Tells a graph of objects as a text, so that graphs can be compared.
#pragma once

#include <kel/bulletinkey.h>
#include <kel/ztring.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

class Bulletin;

/// Graphs of the same objects, in the same order, have the same text. An object stands in it as its number in that
/// order, an anonymous key as the number of its first mention. Numbers are told to the digits that a stream has.
class Description
{
public:
    void enter(const Bulletin* object) { m_numbers.emplace(object, m_numbers.size() + 1); }

    template <class T>
    requires std::is_arithmetic_v<T> Description& add(T value)
    {
        if constexpr (std::is_floating_point_v<T>)
            return addReal(value, std::numeric_limits<T>::min());
        else
            return add(std::to_string(value));
    }

    Description& add(const std::string& text)
    {
        m_text.append(text) += ' ';
        return *this;
    }

    Description& add(const char* text) { return add(std::string(text)); }

    Description& add(const Ztring& text) { return add(text.toUtf8()); }

    Description& add(const BulletinKey& key)
    {
        const auto number = m_keys.emplace(key.getNumber(), m_keys.size()).first->second;
        return key.getName().empty() ? add("#").add(number) : add(key.getName());
    }

    Description& addReference(const Bulletin* object) { return add(object ? m_numbers.at(object) : 0); }

    /// In their order.
    template <class Bulletins>
    Description& addList(const Bulletins& bulletins)
    {
        for (const Bulletin* bulletin : bulletins)
            addReference(bulletin);
        return add(".");
    }

    /// In whatever order.
    template <class Bulletins>
    Description& addSet(const Bulletins& bulletins)
    {
        std::vector<std::size_t> numbers;
        for (const auto& entry : bulletins)
            numbers.push_back(m_numbers.at(entry.second));
        std::sort(numbers.begin(), numbers.end());
        for (const std::size_t number : numbers)
            add(number);
        return add(".");
    }

    const std::string& getText() const { return m_text; }

private:
    /// So close to 0 as `smallest` there are fewer digits than are written.
    Description& addReal(long double value, long double smallest)
    {
        char text[32];
        std::snprintf(text, sizeof text, "%.6Lg", value);
        const bool isTiny = value != 0 && std::abs(std::strtold(text, nullptr)) < 10 * smallest;
        return add(isTiny ? "tiny" : text);
    }

    std::map<const Bulletin*, std::size_t> m_numbers;
    std::map<unsigned, std::size_t> m_keys;
    std::string m_text;
};
