// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include <spawn.h>

#include <string>

namespace truss
{
struct Redirection;

/// How a process is started: with its standard streams in files, and as the first of a group to which all that it
/// starts belongs too.
class SpawnSettings
{
public:
    explicit SpawnSettings(const Redirection& redirection);
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings();

    const posix_spawn_file_actions_t* getFileActions() const { return &m_fileActions; }
    const posix_spawnattr_t* getAttributes() const { return &m_attributes; }

private:
    void open(int descriptor, const std::string& path, int flags);

    posix_spawn_file_actions_t m_fileActions;
    posix_spawnattr_t m_attributes;
};
} // namespace truss
