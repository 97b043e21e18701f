// SPDX-License-Identifier: MIT
// What the fuzz targets have in common.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// The entry of a target, called with one input after the other by libFuzzer, or by support/replay.cpp.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the program, which is a finding, unless the property holds.
#define EXPECT_PROPERTY(property) ((property) ? void() : failProperty(#property, __FILE__, __LINE__))

[[noreturn]] inline void failProperty(const char* property, const char* file, int line)
{
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, property);
    std::abort();
}

/// Takes an input apart from its front.
class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size) : m_rest(reinterpret_cast<const char*>(data), size) {}

    /// The next byte; 0 when none is left.
    char takeByte()
    {
        const char byte = m_rest.empty() ? '\0' : m_rest.front();
        m_rest.remove_prefix(m_rest.empty() ? 0 : 1);
        return byte;
    }

    /// What stands before the next 0xFE, a byte that no encoding of text has, or all that is left.
    std::string takePart()
    {
        const std::string part(m_rest.substr(0, m_rest.find('\xFE')));
        m_rest.remove_prefix(part.size() == m_rest.size() ? part.size() : part.size() + 1);
        return part;
    }

    std::string takeRest()
    {
        const std::string rest(m_rest);
        m_rest = {};
        return rest;
    }

    bool empty() const { return m_rest.empty(); }

private:
    std::string_view m_rest;
};
