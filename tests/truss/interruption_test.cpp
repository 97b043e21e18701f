// SPDX-License-Identifier: MIT
// Ctrl-C during the work of the example application.
#include <truss/support/program.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>

#include <csignal>

extern char** environ;

namespace
{
/// The program reads a file that has no end while somebody presses Ctrl-C.
class Interruption : public ProgramTest
{
protected:
    /// Starts the program with its output in files, and opens the endless file that it reads.
    void start(std::vector<std::string> arguments)
    {
        ASSERT_EQ(mkfifo((directory / "endless").c_str(), 0600), 0);
        arguments.insert(arguments.begin(), TRUSS_PROGRAM);
        std::vector<char*> words;
        for (std::string& argument : arguments)
            words.push_back(argument.data());
        words.push_back(nullptr);

        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        const int flags = O_WRONLY | O_CREAT | O_TRUNC;
        posix_spawn_file_actions_addopen(&actions, 1, (directory / "out.txt").c_str(), flags, 0600);
        posix_spawn_file_actions_addopen(&actions, 2, (directory / "err.txt").c_str(), flags, 0600);
        ASSERT_EQ(posix_spawn(&m_process, TRUSS_PROGRAM, &actions, nullptr, words.data(), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        std::signal(SIGPIPE, SIG_IGN); // the program closes the file before its end
        m_endless = open((directory / "endless").c_str(), O_WRONLY);
    }

    /// Feeds the import, presses Ctrl-C in the midst of it, and feeds on until the program does not want more.
    Outcome interruptImport()
    {
        EXPECT_TRUE(feed(5000));
        kill(m_process, SIGINT);
        while (feed(1000))
            ;
        return finish();
    }

private:
    /// Writes so many nodes; false once the program does not read on.
    bool feed(unsigned count)
    {
        std::string lines;
        for (unsigned i = 0; i < count; ++i)
            lines += "node,m" + std::to_string(m_line++) + ",0,0,0\n";
        return write(m_endless, lines.data(), lines.size()) == static_cast<ssize_t>(lines.size());
    }

    Outcome finish()
    {
        close(m_endless);
        int status = 0;
        waitpid(m_process, &status, 0);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, directory.read("out.txt"), directory.read("err.txt")};
    }

    pid_t m_process = -1;
    int m_endless = -1;
    unsigned m_line = 0;
};

TEST_F(Interruption, EndsAnImportAndGoesOnWithTheNextJob)
{
    ASSERT_EQ(run("-import=" + data + "/tenbar.csv -save=a.truss").status, 0);
    start({directory / "a.truss", "-import=" + directory / "endless", "-solve", "-save=" + directory / "b.truss"});
    const Outcome ended = interruptImport();
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.out.rfind("Interrupted: Importing\nWeight: 5060.93\n", 0), 0u) << ended.out;
    const auto afterFirstLine = [this](const char* name)
    {
        const std::string bytes = directory.read(name);
        return bytes.substr(bytes.find('\n'));
    };
    EXPECT_EQ(afterFirstLine("b.truss"), afterFirstLine("a.truss")); // the document is as it was
}

TEST_F(Interruption, AnImportThatWasInterruptedReplacesNoFile)
{
    ASSERT_EQ(run("-import=" + data + "/tenbar.csv -save=good.truss").status, 0);
    const std::string good = directory.read("good.truss");
    start({"-import=" + directory / "endless", "-save=" + directory / "good.truss"});
    const Outcome ended = interruptImport();
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "'" + directory / "good.truss" + "' is not replaced: the model was not read completely\n");
    EXPECT_EQ(directory.read("good.truss"), good);
}
} // namespace
