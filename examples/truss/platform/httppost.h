// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include <chrono>
#include <string>

namespace truss
{
/// One HTTP POST, with a time limit and with the server's certificate verified. The user can interrupt it.
class HttpPost
{
public:
    /// The address in full, with "http://" or "https://".
    explicit HttpPost(const std::string& address) : m_address(address) {}

    /// The time that all of it may take; two minutes unless set.
    void setLimit(std::chrono::milliseconds limit) { m_limit = limit; }

    void addHeader(const std::string& name, const std::string& value);

    /// Sends the bytes and returns the server's reply. A server that cannot be reached, does not accept the request
    /// or takes too long is a Problem; an interruption is thrown as Interrupted.
    std::string send(const std::string& body) const;

private:
    std::string m_address;
    std::chrono::milliseconds m_limit = std::chrono::minutes(2);
    std::string m_headers; // each ended by a line feed
};
} // namespace truss
