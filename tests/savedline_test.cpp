// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/savedline.h>

#include <kel/reader.h>

#include "support/persistable.h"
#include "support/problem.h"
#include "support/recorder.h"
#include "support/streams.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

class SavedLineTest : public testing::Test
{
protected:
    int readNumber()
    {
        int number = 0;
        m_reader.read(number);
        return number;
    }

    std::istringstream m_in{getPreamble() + "1 2 3 \n"};
    Reader m_reader{m_in, "Test", false};
};

TEST_F(SavedLineTest, HoldsItsBytesUnderItsKey)
{
    const SavedLine line("a b", BulletinKey("Line"));
    EXPECT_EQ(line.getLine(), "a b");
    EXPECT_EQ(line.getKey(), BulletinKey("Line"));
}

TEST_F(SavedLineTest, ReaderTakesItsInputFromTheLineForAScope)
{
    m_reader.add(new SavedLine("7 8 ", BulletinKey("Line")));
    EXPECT_EQ(readNumber(), 1);
    {
        const SavedLine::LineReader line(m_reader, BulletinKey("Line"));
        EXPECT_NE(&m_reader.getIn(), &m_in);
        EXPECT_EQ(readNumber(), 7);
        EXPECT_EQ(readNumber(), 8);
        EXPECT_PROBLEM(readNumber(), "Invalid stream");
    }
    EXPECT_EQ(&m_reader.getIn(), &m_in);
    EXPECT_EQ(readNumber(), 2);
}

TEST_F(SavedLineTest, LineIsTakenOffTheBoard)
{
    m_reader.add(new SavedLine("7 ", BulletinKey("Line")));
    const SavedLine::LineReader line(m_reader, BulletinKey("Line"));
    EXPECT_FALSE(m_reader.hasKey("Line"));
}

TEST_F(SavedLineTest, WithoutALineTheInputStaysAsItIs)
{
    {
        const SavedLine::LineReader line(m_reader, BulletinKey("Line"));
        EXPECT_EQ(&m_reader.getIn(), &m_in);
        EXPECT_EQ(readNumber(), 1);
    }
    EXPECT_EQ(readNumber(), 2);
}

TEST_F(SavedLineTest, AnotherBulletinUnderTheKeyIsLeftAlone)
{
    m_reader.add(new Bulletin("Line"));
    const SavedLine::LineReader line(m_reader, BulletinKey("Line"));
    EXPECT_EQ(&m_reader.getIn(), &m_in);
    EXPECT_TRUE(m_reader.hasKey("Line"));
}

TEST_F(SavedLineTest, LineReadersNest)
{
    m_reader.add(new SavedLine("7 8 ", BulletinKey("Outer")));
    m_reader.add(new SavedLine("9 ", BulletinKey("Inner")));
    const SavedLine::LineReader outer(m_reader, BulletinKey("Outer"));
    EXPECT_EQ(readNumber(), 7);
    {
        const SavedLine::LineReader inner(m_reader, BulletinKey("Inner"));
        EXPECT_EQ(readNumber(), 9);
    }
    EXPECT_EQ(readNumber(), 8);
}

TEST_F(SavedLineTest, ReaderKeepsItsInputWhenAnObserverOfTheRemovalThrows)
{
    m_reader.add(new SavedLine("7 ", BulletinKey("Line")));
    Recorder ofTheLine;
    ofTheLine.observe(*m_reader.getPtr("Line"));
    Recorder ofTheBoard([](const Heard&) { Problem::throwProblem("observer"); });
    ofTheBoard.observe(m_reader);
    EXPECT_PROBLEM(SavedLine::LineReader(m_reader, BulletinKey("Line")), "observer");
    EXPECT_EQ(&m_reader.getIn(), &m_in);
    EXPECT_EQ(ofTheLine.operations(), std::vector<std::string>{"deleted"});
}

TEST(SavedLine, ObjectsReadInFixupWhatTheySavedInRead)
{
    const PersistableGuard guard{};
    TestStatus status;
    std::vector<int> numbers;
    Scripted::onRead = [](Scripted& object, Reader& reader)
    {
        object.setKey(BulletinKey());
        reader.saveLine(object.getKey());
    };
    Scripted::onFixup = [&numbers](Scripted& object, Reader& reader)
    {
        const SavedLine::LineReader line(reader, object.getKey());
        reader.read(object.number);
        numbers.push_back(object.number);
        return true;
    };
    EXPECT_TRUE(read<Scripted>("0 8 Scripted 5 \n1 6 \n1 7 \n"));
    Scripted::onRead = nullptr;
    Scripted::onFixup = nullptr;
    EXPECT_EQ(numbers, (std::vector<int>{7, 6, 5}));
}
