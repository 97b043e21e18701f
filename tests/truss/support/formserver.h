// SPDX-License-Identifier: MIT
// A real server for forms, with a parser of its own.
#pragma once

#include "truss/platform/filedescriptor.h"

#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

extern char** environ; // no header declares it

/// The server of formserver.js while this object lives; one that does not start is a failure of the test.
class FormServer
{
public:
    /// The files of the forms go to the directory.
    explicit FormServer(const std::filesystem::path& directory)
    {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
            throw std::runtime_error("No connection to the form server");
        m_line.emplace(ends[0]);
        start(directory.string(), truss::FileDescriptor(ends[1]));
        m_port = readLine();
    }
    FormServer(const FormServer&) = delete;
    FormServer& operator=(const FormServer&) = delete;
    ~FormServer() { stop(); }

    /// "http://" with the host and the port.
    std::string getAddress() const { return "http://127.0.0.1:" + m_port; }

    /// Whether the server has said something that was not read yet; does not wait.
    bool hasLine() const
    {
        pollfd line{m_line->get(), POLLIN, 0};
        return poll(&line, 1, 0) == 1;
    }

    /// Waits for the next thing that the server says: "request" when one has begun, "received" when the silent server
    /// has all of it, "closed" when the connection is over.
    std::string readLine()
    {
        std::string line;
        for (char next; read(m_line->get(), &next, 1) == 1; line += next)
        {
            if (next == '\n')
                return line;
        }
        stop();
        throw std::runtime_error("The form server has ended; it needs the packages nodejs and node-busboy");
    }

    void stop()
    {
        if (m_id < 0)
            return;
        shutdown(m_line->get(), SHUT_WR); // its standard input ends, and so does it
        waitpid(m_id, nullptr, 0);
        m_id = -1;
    }

private:
    void start(std::string directory, const truss::FileDescriptor& line)
    {
        // Where Debian puts the modules, for a node that is not Debian's too.
        std::string words[] = {"env", "NODE_PATH=/usr/share/nodejs", "node", TRUSS_TESTS "/support/formserver.js",
                               std::move(directory)};
        char* arguments[] = {words[0].data(), words[1].data(), words[2].data(),
                             words[3].data(), words[4].data(), nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, line.get(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, line.get(), STDOUT_FILENO);
        const int error = posix_spawnp(&m_id, arguments[0], &actions, nullptr, arguments, environ);
        posix_spawn_file_actions_destroy(&actions);
        if (error != 0)
            throw std::runtime_error("The form server does not start");
    }

    std::optional<truss::FileDescriptor> m_line;
    std::string m_port;
    pid_t m_id = -1;
};
