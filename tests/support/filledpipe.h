// SPDX-License-Identifier: MIT
// A pipe to read from, as from another program.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <string>

/// Holds the bytes, no more than a pipe takes at once, and ends behind them.
class FilledPipe
{
public:
    explicit FilledPipe(const std::string& bytes)
    {
        EXPECT_EQ(pipe(m_ends), 0);
        EXPECT_EQ(write(m_ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        close(m_ends[1]);
    }
    FilledPipe(const FilledPipe&) = delete;
    FilledPipe& operator=(const FilledPipe&) = delete;
    ~FilledPipe() { close(m_ends[0]); }

    /// What a stream opens to read from the pipe.
    std::string getPath() const { return "/dev/fd/" + std::to_string(m_ends[0]); }

private:
    int m_ends[2] = {-1, -1};
};
