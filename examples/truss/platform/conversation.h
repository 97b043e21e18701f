// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include <chrono>
#include <cstddef>
#include <exception>
#include <string>

namespace truss
{
/// The application's side of an HTTP transfer: takes the reply and looks for Ctrl-C.
///
/// No exception may pass through the C library that does the transfer, so it is kept until that has returned.
class Conversation
{
public:
    /// Takes a piece of the reply; @return whether the transfer goes on.
    bool receive(const char* data, std::size_t size);
    /// Called often during the transfer, also while nothing arrives; @return whether it goes on.
    bool goOn();

    /// What one of the calls has thrown, if any.
    void rethrowFailure() const;
    const std::string& getReply() const { return m_reply; }

private:
    void append(const char* data, std::size_t size);
    void checkInterrupt();
    template <class Action>
    bool attempt(const Action& action);

    std::string m_reply;
    std::exception_ptr m_failure;
    std::chrono::steady_clock::time_point m_last = std::chrono::steady_clock::now();
};
} // namespace truss
