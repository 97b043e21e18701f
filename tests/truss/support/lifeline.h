// SPDX-License-Identifier: MIT
// Whether a program that was started still lives.
#pragma once

#include "truss/platform/filedescriptor.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

/// A named pipe that a program opens and writes to when it is under way, and that is held open by all that the program
/// starts. However they end, the system closes it.
class LifeLine
{
public:
    explicit LifeLine(const std::string& path) : m_pipe(open(path)) {}

    /// Whether something was written; does not wait.
    bool hasBegun() const
    {
        pollfd pipe{m_pipe.get(), POLLIN, 0};
        return poll(&pipe, 1, 0) == 1 && (pipe.revents & POLLIN) != 0;
    }

    /// Waits until nobody has the pipe open any more, and returns what was written.
    std::string waitForEnd() const
    {
        fcntl(m_pipe.get(), F_SETFL, 0); // now reading waits
        std::string text;
        for (char next; read(m_pipe.get(), &next, 1) == 1;)
            text += next;
        return text;
    }

private:
    static truss::FileDescriptor open(const std::string& path)
    {
        EXPECT_EQ(mkfifo(path.c_str(), 0600), 0) << path;
        return truss::FileDescriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    }

    truss::FileDescriptor m_pipe;
};
