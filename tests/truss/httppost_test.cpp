// SPDX-License-Identifier: MIT
// Forms on their way to a real server.
#include <support/installed.h>
#include <support/problem.h>
#include <support/temporarydirectory.h>
#include <support/teststatus.h>
#include <truss/support/formserver.h>

#include "truss/platform/linuxplatform.h"

#include <kel/file_kel.h>
#include <kel/formdataposter.h>
#include <kel/interrupted.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>

#include <chrono>
#include <cstdlib>
#include <numeric>
#include <random>

namespace
{
using testing::AnyOf;
using testing::Eq;

/// A port of the loopback address that is taken and at which nobody listens, so that connections are refused.
class DeadPort
{
public:
    DeadPort() : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        auto* const address = reinterpret_cast<sockaddr*>(&m_address);
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(bind(m_socket.get(), address, m_size), 0);
        EXPECT_EQ(getsockname(m_socket.get(), address, &m_size), 0);
    }

    std::string getAddress() const { return "http://127.0.0.1:" + std::to_string(ntohs(m_address.sin_port)); }

private:
    truss::FileDescriptor m_socket;
    sockaddr_in m_address{};
    socklen_t m_size = sizeof m_address;
};

/// The same bytes each time, of every value.
std::string makeBytes(std::size_t count)
{
    std::mt19937 numbers;
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(numbers() & 0xff);
    return bytes;
}

class HttpPost : public testing::Test
{
protected:
    HttpPost() { setenv("no_proxy", "127.0.0.1", 1); }

    /// What the server answers.
    std::string post(const std::string& path)
    {
        Ztring response;
        form.postTo(server.getAddress(), path, response);
        return response.toUtf8();
    }

    void addFile(const std::string& name, const std::string& bytes)
    {
        const Kel::File file(directory.write("sent-" + name, bytes));
        form.addFile(name, name + ".bin", "application/octet-stream", file);
    }

    /// Posts, which has to fail, and returns the message without the address.
    std::string failToPost(const std::string& path)
    {
        try
        {
            ADD_FAILURE() << "Accepted: " << post(path);
            return std::string();
        }
        catch (const Problem& problem)
        {
            const std::string message = problem.getMessage().toUtf8();
            const std::size_t at = message.find(server.getAddress() + path);
            EXPECT_NE(at, std::string::npos) << message;
            return std::string(message).erase(at, (server.getAddress() + path).size());
        }
    }

    /// Presses Stop once the server has said so.
    void interruptAt(const std::string& line)
    {
        status.onUpdate = [this, line](int)
        {
            while (server.hasLine() && !status.isInterrupted())
                if (server.readLine() == line)
                    status.setInterrupted();
        };
    }

    TestStatus status;
    Installed<truss::LinuxPlatform> platform;
    TemporaryDirectory directory;
    FormServer server{directory.getPath()};
    FormDataPoster form;
};

TEST_F(HttpPost, FieldsArriveInTheirOrder)
{
    form.addField("title", "Crash report");
    form.addField("empty", "");
    form.addField("text", "first line\r\nsecond = \"line\"; --\r\n");
    EXPECT_EQ(post("/form"), "title=Crash report\nempty=\ntext=first "
                             "line\r\nsecond = \"line\"; --\r\n\n");
}

TEST_F(HttpPost, AFileArrivesBetweenFields)
{
    form.addField("before", "1");
    addFile("model", "abc");
    form.addField("after", "2");
    EXPECT_EQ(post("/form"), "before=1\nmodel: model.bin application/octet-stream 3\nafter=2\n");
    EXPECT_EQ(directory.read("model"), "abc");
}

TEST_F(HttpPost, EachByteArrivesInAFileOfItsOwn)
{
    for (int byte = 0; byte < 256; ++byte)
    {
        Array<char> data;
        data.push_back(static_cast<char>(byte));
        form.addFile("byte" + std::to_string(byte), "a", "application/octet-stream", data);
    }
    post("/form");
    for (int byte = 0; byte < 256; ++byte)
        EXPECT_EQ(directory.read("byte" + std::to_string(byte)), std::string(1, static_cast<char>(byte))) << byte;
}

TEST_F(HttpPost, WhatLooksLikeTheBoundaryArrives)
{
    const std::string boundary = form.getBoundary().toUtf8();
    const std::string bytes = "\r\n--" + boundary.substr(0, boundary.size() - 1) + "\r\n\r\n--\r\n" + '\0' + "--\r\n";
    addFile("model", bytes);
    post("/form");
    EXPECT_EQ(directory.read("model"), bytes);
}

class HttpPostOfSize : public HttpPost, public testing::WithParamInterface<std::size_t>
{
};

TEST_P(HttpPostOfSize, AFileArrivesByteForByte)
{
    const std::string bytes = makeBytes(GetParam());
    addFile("model", bytes);
    EXPECT_EQ(post("/form"), "model: model.bin application/octet-stream " + std::to_string(bytes.size()) + "\n");
    EXPECT_TRUE(directory.read("model") == bytes); // too long to be shown
}

INSTANTIATE_TEST_SUITE_P(AroundABlock, HttpPostOfSize, testing::Values(0, 1, 4095, 4096, 4097, 10 << 20));

TEST_F(HttpPost, EveryStatusThatMeansSuccessIsAccepted)
{
    EXPECT_EQ(post("/created"), "made");
}

TEST_F(HttpPost, AReplyThatIsNotUtf8IsTakenByteByByte)
{
    EXPECT_EQ(post("/bytes"), "g\u00e9");
}

TEST_F(HttpPost, ACharacterThatIsNoByteIsNotSent)
{
    Ztring euro;
    euro.fromUtf8("\u20ac");
    form.addField("price", euro);
    EXPECT_PROBLEM(post("/form"), "A form holds a character that is no byte");
    EXPECT_FALSE(server.hasLine());
}

TEST_F(HttpPost, AnAddressThatIsNotOfTheWebIsRefused)
{
    Ztring response;
    EXPECT_PROBLEM(form.postTo("file://", "/etc/hostname", response),
                   "Failed to post to 'file:///etc/hostname': Unsupported protocol");
    EXPECT_EQ(response.toUtf8(), "");
}

TEST_F(HttpPost, ARefusedConnectionIsAProblem)
{
    const DeadPort port;
    Ztring response("as before");
    EXPECT_PROBLEM(form.postTo(port.getAddress(), "/form", response),
                   "Failed to post to '" + port.getAddress() + "/form': Couldn't connect to server");
    EXPECT_EQ(response.toUtf8(), "as before");
}

TEST_F(HttpPost, AFailureOfTheServerIsAProblem)
{
    EXPECT_EQ(failToPost("/failing"), "'' answered with status 500");
}

TEST_F(HttpPost, ARedirectionIsNotFollowed)
{
    EXPECT_EQ(failToPost("/moved"), "'' answered with status 302");
}

TEST_F(HttpPost, AConnectionThatIsResetWhileSendingIsAProblem)
{
    addFile("model", makeBytes(10 << 20));
    // It depends on what the kernel still holds whether the sending or the receiving fails.
    EXPECT_THAT(failToPost("/reset"), AnyOf(Eq("Failed to post to '': Failed sending data to the peer"),
                                            Eq("Failed to post to '': Failure when receiving data from "
                                               "the peer")));
}

TEST_F(HttpPost, AReplyThatIsCutOffIsAProblem)
{
    EXPECT_EQ(failToPost("/cut"), "Failed to post to '': Transferred a partial file");
}

TEST_F(HttpPost, AReplyWithoutEndIsAProblem)
{
    EXPECT_PROBLEM(post("/flood"), "The reply of the server is too long");
}

TEST_F(HttpPost, AServerThatNeverAnswersIsAProblemAfterTheTimeLimit)
{
    platform->setPostLimit(std::chrono::milliseconds(200));
    EXPECT_EQ(failToPost("/silent"), "Failed to post to '': Timeout was reached");
}

TEST_F(HttpPost, AServerThatReadsNothingIsAProblemAfterTheTimeLimit)
{
    addFile("model",
            makeBytes(16 << 20)); // more than the buffers of a connection
    platform->setPostLimit(std::chrono::milliseconds(200));
    EXPECT_EQ(failToPost("/deaf"), "Failed to post to '': Timeout was reached");
}

TEST_F(HttpPost, AnInterruptWhileSendingEndsTheConnection)
{
    addFile("model", makeBytes(16 << 20));
    interruptAt("request");
    EXPECT_THROW(post("/deaf"), Interrupted);
}

TEST_F(HttpPost, AnInterruptWhileWaitingForTheAnswerEndsTheConnection)
{
    interruptAt("received");
    EXPECT_THROW(post("/silent"), Interrupted);
    EXPECT_EQ(server.readLine(), "closed");
}

TEST_F(HttpPost, AFailureInAnUpdatePassesThrough)
{
    status.onUpdate = [](int) { Problem::throwProblem("Failed to draw"); };
    EXPECT_PROBLEM(post("/silent"), "Failed to draw");
}

TEST_F(HttpPost, AnInterruptedFormCanBePostedAnew)
{
    interruptAt("received");
    EXPECT_THROW(post("/silent"), Interrupted);
    status.onUpdate = nullptr;
    status.resetInterrupt();

    form = FormDataPoster();
    form.addField("again", "yes");
    EXPECT_EQ(post("/form"), "again=yes\n");
}
} // namespace
