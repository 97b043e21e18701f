// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/conversation.h"

#include <kel/problem.h>
#include <kel/status.h>
#include <kel/translator.h>

namespace truss
{
namespace
{
constexpr std::size_t mostReplyBytes = 1 << 20;
} // namespace

bool Conversation::receive(const char* data, std::size_t size)
{
    return attempt([&] { append(data, size); });
}

bool Conversation::goOn()
{
    return attempt([this] { checkInterrupt(); });
}

void Conversation::rethrowFailure() const
{
    if (m_failure)
        std::rethrow_exception(m_failure);
}

void Conversation::append(const char* data, std::size_t size)
{
    if (m_reply.size() + size > mostReplyBytes)
        Problem::throwProblem(Translator::tr("The reply of the server is too long"));
    m_reply.append(data, size);
}

// A transfer mostly waits, which takes no processor time; the status has to be told of it.
void Conversation::checkInterrupt()
{
    const auto now = std::chrono::steady_clock::now();
    const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(now - m_last);
    m_last += waited;
    Status& status = Status::getSingleton();
    status.sleep(static_cast<unsigned>(waited.count()));
    status.checkInterrupt(-1);
}

template <class Action>
bool Conversation::attempt(const Action& action)
try
{
    action();
    return true;
}
catch (...)
{
    m_failure = std::current_exception();
    return false;
}
} // namespace truss
