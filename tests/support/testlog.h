// SPDX-License-Identifier: MIT
// A log that keeps its messages.
#pragma once

#include <kel/log_kel.h>
#include <kel/ztring.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Records the messages in order. Put it into place with Installed<TestLog>.
class TestLog : public Kel::Log
{
public:
    using Kel::Log::append;

    void append(const Ztring& text, Message::Type type) override
    {
        messages.emplace_back(type, text.toUtf8());
        if (onAppend)
            onAppend();
    }

    std::vector<std::pair<Message::Type, std::string>> messages;

    /// Called at the end of each append.
    std::function<void()> onAppend;
};
