// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/spawnsettings.h"

#include "truss/platform/redirection.h"

#include <fcntl.h>
#include <unistd.h>

namespace truss
{
SpawnSettings::SpawnSettings(const Redirection& redirection)
{
    posix_spawn_file_actions_init(&m_fileActions);
    open(STDIN_FILENO, redirection.in, O_RDONLY);
    open(STDOUT_FILENO, redirection.out, O_WRONLY | O_CREAT | O_TRUNC);
    open(STDERR_FILENO, redirection.err, O_WRONLY | O_CREAT | O_TRUNC);
    posix_spawnattr_init(&m_attributes);
    posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&m_attributes, 0);
}

SpawnSettings::~SpawnSettings()
{
    posix_spawnattr_destroy(&m_attributes);
    posix_spawn_file_actions_destroy(&m_fileActions);
}

void SpawnSettings::open(int descriptor, const std::string& path, int flags)
{
    if (!path.empty())
        posix_spawn_file_actions_addopen(&m_fileActions, descriptor, path.c_str(), flags, 0600);
}
} // namespace truss
