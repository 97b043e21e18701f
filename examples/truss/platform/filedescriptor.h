// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include <unistd.h>

#include <utility>

namespace truss
{
/// Owns a descriptor of the operating system and closes it.
class FileDescriptor
{
public:
    /// -1 stands for none.
    explicit FileDescriptor(int descriptor = -1) : m_descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }

    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};
} // namespace truss
