// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/formdataposter.h>

#include <kel/interrupted.h>

#include "support/installed.h"
#include "support/problem.h"
#include "support/temporarydirectory.h"
#include "support/testplatform.h"
#include "support/teststatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace
{
using testing::ElementsAre;

const std::string s_boundary = "----------ThIs_Is_tHe_bouNdaRY";

Array<char> toArray(const std::string& bytes)
{
    Array<char> array;
    for (const char c : bytes)
        array.push_back(c);
    return array;
}

/// The body with each character turned back into the byte that it stands for.
std::string getBytes(const FormDataPoster& form)
{
    std::string bytes;
    for (const wchar_t c : form.getBody().wStdStr())
    {
        EXPECT_LT(static_cast<unsigned int>(c), 256u);
        bytes += static_cast<char>(c);
    }
    return bytes;
}

std::string makeField(const std::string& name, const std::string& value)
{
    return "--" + s_boundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + "\r\n";
}

std::string makeFileHead(const std::string& name, const std::string& fileName, const std::string& contentType)
{
    return "--" + s_boundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"; filename=\"" + fileName +
           "\"\r\nContent-Type: " + contentType + "\r\n\r\n";
}

std::string makeFilePart(const std::string& bytes)
{
    return makeFileHead("f", "x.txt", "text/plain") + bytes + "\r\n";
}

/// All byte values, over and over.
std::string makeBytes(std::size_t count)
{
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += static_cast<char>(i % 251);
    return bytes;
}

struct FormDataPosterTest : testing::Test
{
    void addFile(const std::string& path) { form.addFile("f", "x.txt", "text/plain", Kel::File(path)); }

    TemporaryDirectory directory;
    std::unique_ptr<TestStatus> status = std::make_unique<TestStatus>();
    FormDataPoster form;
};
} // namespace

TEST_F(FormDataPosterTest, StartsEmptyWithItsBoundary)
{
    EXPECT_TRUE(form.getBody().empty());
    EXPECT_EQ(form.getBoundary(), s_boundary);
}

TEST_F(FormDataPosterTest, FieldHasNameAndValue)
{
    form.addField("a", "1");
    EXPECT_EQ(getBytes(form), makeField("a", "1"));
}

TEST_F(FormDataPosterTest, FieldMayBeEmpty)
{
    form.addField("a", "");
    EXPECT_EQ(getBytes(form), "--" + s_boundary + "\r\nContent-Disposition: form-data; name=\"a\"\r\n\r\n\r\n");
}

TEST_F(FormDataPosterTest, SectionIsTheHeadOfAFilePart)
{
    form.addFileSection("f", "x.txt", "text/plain");
    EXPECT_EQ(getBytes(form), makeFileHead("f", "x.txt", "text/plain"));
}

TEST_F(FormDataPosterTest, DataIsCarriedByteByByte)
{
    const std::string bytes("\0hi\xFF\r\n\x80", 7);
    form.addFile("f", "x.txt", "text/plain", toArray(bytes));
    EXPECT_EQ(getBytes(form), makeFilePart(bytes));
    const std::wstring body = form.getBody().wStdStr();
    EXPECT_NE(body.find(L'\0'), std::wstring::npos);
    EXPECT_NE(body.find(wchar_t(0xFF)), std::wstring::npos);
}

TEST_F(FormDataPosterTest, DataMayBeEmptyOrLong)
{
    for (const std::size_t size : {0u, 1u, 4095u, 4096u, 4097u, 10000u})
    {
        FormDataPoster poster;
        poster.addFile("f", "x.txt", "text/plain", toArray(makeBytes(size)));
        EXPECT_EQ(getBytes(poster), makeFilePart(makeBytes(size))) << size;
    }
}

TEST_F(FormDataPosterTest, DataIsNotInterrupted)
{
    status->setInterrupted();
    form.addFile("f", "x.txt", "text/plain", toArray("hi"));
    EXPECT_EQ(getBytes(form), makeFilePart("hi"));
}

TEST_F(FormDataPosterTest, FileIsCarriedByteByByte)
{
    for (const std::size_t size : {0u, 1u, 4095u, 4096u, 4097u, 10000u})
    {
        FormDataPoster poster;
        const std::string path = directory.write("x.bin", makeBytes(size));
        poster.addFile("f", "x.txt", "text/plain", Kel::File(path));
        EXPECT_EQ(getBytes(poster), makeFilePart(makeBytes(size))) << size;
    }
}

TEST_F(FormDataPosterTest, MissingFileFailsAndLeavesTheBody)
{
    form.addField("a", "1");
    const std::string path = directory / "missing";
    EXPECT_PROBLEM(addFile(path), "Failed to open file: '" + path + "'");
    EXPECT_EQ(getBytes(form), makeField("a", "1"));
}

TEST_F(FormDataPosterTest, InterruptedBehindTheFirstBlock)
{
    const std::string path = directory.write("x.bin", makeBytes(10000));
    status->setInterrupted();
    EXPECT_THROW(addFile(path), Interrupted);
    EXPECT_EQ(getBytes(form), makeFileHead("f", "x.txt", "text/plain") + makeBytes(4096));
}

TEST_F(FormDataPosterTest, InterruptedBehindTheLastBlockToo)
{
    const std::string path = directory.write("x.bin", makeBytes(4096));
    status->setInterrupted();
    EXPECT_THROW(addFile(path), Interrupted);
    EXPECT_EQ(getBytes(form), makeFileHead("f", "x.txt", "text/plain") + makeBytes(4096));
}

TEST_F(FormDataPosterTest, EmptyFileIsNotInterrupted)
{
    const std::string path = directory.write("x.bin", "");
    status->setInterrupted();
    addFile(path);
    EXPECT_EQ(getBytes(form), makeFilePart(""));
}

TEST_F(FormDataPosterTest, ReportsUnknownProgressWhileReading)
{
    const std::string path = directory.write("x.bin", makeBytes(4096));
    status->elapse();
    addFile(path);
    EXPECT_THAT(status->updates, ElementsAre(-1));
}

TEST_F(FormDataPosterTest, ChecksAfterEachBlock)
{
    const std::string path = directory.write("x.bin", makeBytes(3 * 4096));
    status->setUpdateInterval(0);
    status->interruptAt(2);
    status->elapse();
    EXPECT_THROW(addFile(path), Interrupted);
    EXPECT_EQ(getBytes(form), makeFileHead("f", "x.txt", "text/plain") + makeBytes(2 * 4096));
}

TEST_F(FormDataPosterTest, ReadingAFileNeedsAStatus)
{
    status.reset();
    addFile(directory.write("empty", ""));
    EXPECT_ASSERTION(addFile(directory.write("x.bin", "hi")), "valid(s_singleton)");
}

TEST_F(FormDataPosterTest, PostsTheClosedBodyThroughThePlatform)
{
    const Installed<TestPlatform> platform;
    form.addField("a", "1");
    form.addFile("f", "x.txt", "text/plain", toArray("hi"));
    Ztring response;
    form.postTo("www.pellwick.example", "/upload", response);
    EXPECT_THAT(platform->calls, ElementsAre("postForm www.pellwick.example /upload Content-Type "
                                             "multipart/form-data; boundary=" +
                                             s_boundary));
    EXPECT_EQ(platform->postedBody, makeField("a", "1") + makeFilePart("hi") + "--" + s_boundary + "--\r\n\r\n");
    EXPECT_EQ(response, "received");
}

TEST_F(FormDataPosterTest, EmptyFormIsOnlyClosed)
{
    const Installed<TestPlatform> platform;
    Ztring response;
    form.postTo("here", "there", response);
    EXPECT_EQ(platform->postedBody, "--" + s_boundary + "--\r\n\r\n");
}

TEST_F(FormDataPosterTest, PostingTwiceClosesTwice)
{
    const Installed<TestPlatform> platform;
    Ztring response;
    form.postTo("here", "there", response);
    form.postTo("here", "there", response);
    EXPECT_EQ(platform->postedBody, "--" + s_boundary + "--\r\n\r\n--" + s_boundary + "--\r\n\r\n");
}

TEST_F(FormDataPosterTest, FailingPlatformPassesItsProblemOn)
{
    const Installed<TestPlatform> platform;
    platform->failingCall = "postForm";
    Ztring response;
    EXPECT_PROBLEM(form.postTo("here", "there", response), "failed");
    EXPECT_TRUE(response.empty());
}
