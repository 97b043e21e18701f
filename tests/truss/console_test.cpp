// SPDX-License-Identifier: MIT
// The example application on a real terminal, seen from its other side.
#include <truss/support/program.h>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/stat.h>

#include <csignal>

namespace
{
/// The program reads a file that has no end, on a terminal of its own.
class Console : public ProgramTest
{
protected:
    ~Console() override
    {
        close(m_endless);
        close(m_terminal);
    }

    void start()
    {
        const std::string endless = directory / "endless";
        ASSERT_EQ(mkfifo(endless.c_str(), 0600), 0);
        std::signal(SIGPIPE, SIG_IGN); // the program closes the file before its end
        m_process = forkpty(&m_terminal, nullptr, nullptr, nullptr);
        if (m_process == 0)
        {
            execl(TRUSS_PROGRAM, TRUSS_PROGRAM, ("-import=" + endless).c_str(), nullptr);
            _exit(127);
        }
        ASSERT_GT(m_process, 0);
        m_endless = open(endless.c_str(), O_WRONLY);
    }

    /// Feeds the program until it has shown a text; false once it does not read on.
    bool feedUntil(const std::string& text)
    {
        while (m_shown.find(text) == std::string::npos)
        {
            if (!feed())
                return false;
            look();
        }
        return true;
    }

    void type(char key) { ASSERT_EQ(write(m_terminal, &key, 1), 1); }

    /// Feeds the program until it does not want more, then gives its exit status.
    int finish()
    {
        while (feed())
            look();
        pollfd more{m_terminal, POLLIN, 0};
        while (poll(&more, 1, -1) == 1 && look())
            ;
        int status = 0;
        waitpid(m_process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string m_shown;

private:
    bool feed()
    {
        std::string lines;
        for (int i = 0; i < 100; ++i)
            lines += "node,m" + std::to_string(m_line++) + ",0,0,0\n";
        return write(m_endless, lines.data(), lines.size()) == static_cast<ssize_t>(lines.size());
    }

    /// Takes what the program has shown meanwhile; false once it has closed the terminal.
    bool look()
    {
        pollfd ready{m_terminal, POLLIN, 0};
        while (poll(&ready, 1, 0) == 1)
        {
            char bytes[4096];
            const ssize_t count = read(m_terminal, bytes, sizeof bytes);
            if (count <= 0)
                return false;
            m_shown.append(bytes, static_cast<std::size_t>(count));
        }
        return true;
    }

    pid_t m_process = -1;
    int m_terminal = -1;
    int m_endless = -1;
    unsigned m_line = 0;
};

TEST_F(Console, ShowsProgressAndEndsTheJobOnCtrlC)
{
    start();
    ASSERT_TRUE(feedUntil("Importing"));
    type('\x03');
    EXPECT_EQ(finish(), 1);
    // The progress line is gone before the message comes.
    EXPECT_NE(m_shown.find("\r\033[KInterrupted: Importing\r\n"), std::string::npos) << m_shown;
}

TEST_F(Console, TurnsAWheelWhileTheJobGoesOn)
{
    start();
    for (const char* spoke : {"| ", "/ ", "- ", "\\ "})
        ASSERT_TRUE(feedUntil(std::string("\r\033[K") + spoke)) << m_shown;
    type('\x03');
    EXPECT_EQ(finish(), 1);
}
} // namespace
