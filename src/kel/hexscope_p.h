// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <ios>

/// Switches a stream to hexadecimal; it is in decimal again at the end of the scope, also when an exception passes
/// through.
class HexScope
{
public:
    explicit HexScope(std::ios_base& stream) : m_stream(stream)
    {
        m_stream.setf(std::ios_base::hex, std::ios_base::basefield);
    }
    ~HexScope() { m_stream.setf(std::ios_base::dec, std::ios_base::basefield); }

    HexScope(const HexScope&) = delete;
    HexScope& operator=(const HexScope&) = delete;

private:
    std::ios_base& m_stream;
};
