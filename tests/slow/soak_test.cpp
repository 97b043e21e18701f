// SPDX-License-Identifier: MIT
// All that an application does with its document, again and again, with steady memory.
#include <kel/batchtask.h>
#include <kel/bulletinboard.h>
#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/mementos.h>
#include <kel/othertasks.h>
#include <kel/problem.h>
#include <kel/task.h>
#include <kel/tasks.h>

#include "slow/count.h"
#include "slow/scaled.h"
#include "support/persistable.h"
#include "support/recorder.h"
#include "support/streams.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <fstream>
#include <iostream>
#include <string>

namespace
{
std::size_t getResidentKiB()
{
    std::ifstream statm("/proc/self/statm");
    std::size_t size = 0;
    std::size_t resident = 0;
    statm >> size >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) / 1024;
}

/// Counts to three as one step.
class CountThree : public Command
{
public:
    explicit CountThree(std::size_t& document)
    {
        for (unsigned i = 0; i < 3; ++i)
            m_steps.add(new Count(document));
    }

    void execute() override { m_steps.execute(); }
    void undo() override { m_steps.undo(); }
    void redo() override { m_steps.redo(); }
    Ztring getLabel() const override { return "count to three"; }

private:
    Mementos m_steps;
};

/// Counts in two steps.
class CountTwice : public Task
{
public:
    explicit CountTwice(std::size_t& document) : m_document(document) { m_quiet = true; }

    void performAction() override
    {
        ++m_document;
        ++m_steps;
    }
    bool repeat() override { return m_steps < 2; }

private:
    std::size_t& m_document;
    unsigned m_steps = 0;
};
} // namespace

class SoakTest : public testing::Test
{
protected:
    SoakTest() { m_controller.setMaximumUndo(100); }

    void runRound(std::size_t round)
    {
        changeBoard();
        changeDocument(new Count(m_document), 1);
        replaceText();
        if (round % 2 == 0)
            changeDocument(new CountThree(m_document), 3);
        else
            runTasks();
        if (round % 5 == 0)
            saveAndOpen();
        if (round % 25 == 2)
            openCut();
        m_status.updates.clear();
        m_status.texts.clear();
    }

    void changeBoard()
    {
        auto* const bulletin = new Bulletin;
        m_board.add(bulletin);
        m_recorder.observe(*bulletin);
        bulletin->notifyChanged();
        m_recorder.unobserve(*bulletin);
        m_recorder.heard.clear();
        if (m_board.size() > 1000)
            Bulletin::destroy(m_board.removeByKey((*m_board.begin()).second->getKey()), false);
        m_operations += 6;
    }

    void changeDocument(Command* command, std::size_t change)
    {
        const std::size_t before = m_document;
        m_controller.execute(command);
        m_controller.undo();
        EXPECT_EQ(m_document, before);
        m_controller.redo();
        EXPECT_EQ(m_document, before + change);
        while (m_controller.pruneUndo())
            ;
        m_operations += 3;
    }

    void replaceText()
    {
        Ztring text("of %1");
        text.argReplace("operations");
        EXPECT_EQ(text.length(), 13u);
        ++m_operations;
    }

    /// A task, a batch of two and a task of the other queue, of two steps each.
    void runTasks()
    {
        const std::size_t before = m_document;
        Tasks::getSingleton()->add(new CountTwice(m_document));
        auto* const batch = new BatchTask(true);
        batch->add(new CountTwice(m_document));
        batch->add(new CountTwice(m_document));
        Tasks::getSingleton()->add(batch);
        OtherTasks::getSingleton()->add(new CountTwice(m_document));
        while (Tasks::getSingleton()->onIdle() || OtherTasks::getSingleton()->onIdle())
            ++m_operations;
        EXPECT_EQ(m_document, before + 8);
    }

    std::string save()
    {
        ++m_saves;
        const PersistableGuard guard;
        auto* const document = new Document;
        Node* last = nullptr;
        for (unsigned i = 0; i < 5; ++i)
        {
            auto* const node = new Node("node");
            node->first = last;
            node->second = document;
            last = node;
            document->add(node);
        }
        std::ostringstream out;
        Writer(out, "Test", true).writeObj(document);
        return out.str();
    }

    void saveAndOpen()
    {
        std::istringstream in(save());
        const auto* const document = dynamic_cast<Document*>(Reader(in, "Test", true).perform());
        EXPECT_EQ(document->size(), 5u);
        Persistable::deleteAll();
        m_operations += 2;
    }

    void openCut()
    {
        const std::string stream = save();
        std::istringstream in(stream.substr(0, stream.size() / 2));
        EXPECT_THROW(Reader(in, "Test", true).perform(), Problem);
        Persistable::deleteAll();
        m_operations += 2;
    }

    std::size_t m_operations = 0;
    std::size_t m_saves = 0;
    TestStatus m_status;
    CommandController m_controller;
    BulletinBoard m_board;
    Recorder m_recorder;
    std::size_t m_document = 0;
};

TEST_F(SoakTest, MixedOperationsKeepTheMemorySteady)
{
    const std::size_t wanted = scaled(10000000);
    std::size_t after = 0;
    for (std::size_t round = 0; m_operations < wanted; ++round)
    {
        runRound(round);
        // What is taken at first is kept.
        if (after == 0 && m_operations > wanted / 10)
            after = getResidentKiB();
    }
    const std::size_t end = getResidentKiB();
    std::cout << m_operations << " operations with " << m_saves << " saves and openings: resident after a tenth "
              << after << " KiB, at the end " << end << " KiB" << std::endl;
    EXPECT_LT(end, after + 256);
}
