// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include <istream>
#include <sstream>
#include <string>
#include <utility>

namespace bench
{
/// Saved bytes for contenders that open from a `std::istream`; making it copies nothing, rewinding neither.
class StreamSource
{
public:
    explicit StreamSource(std::string bytes) : m_in(std::move(bytes)) {}

    /// The stream at the first byte, in good state.
    std::istream& rewind()
    {
        m_in.clear();
        m_in.seekg(0);
        return m_in;
    }

private:
    std::istringstream m_in;
};
} // namespace bench
