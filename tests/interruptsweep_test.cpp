// SPDX-License-Identifier: MIT
// Stop pressed at each check of an operation in turn: Interrupted comes out, or is dealt with, and nothing is lost.
#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/filewriter.h>
#include <kel/formdataposter.h>
#include <kel/interrupted.h>
#include <kel/mementos.h>

#include "support/failingallocation.h"
#include "support/installed.h"
#include "support/persistable.h"
#include "support/streams.h"
#include "support/tally.h"
#include "support/temporarydirectory.h"
#include "support/testplatform.h"
#include "support/teststatus.h"
#include "support/tickingclock.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace
{
constexpr std::size_t s_objects = 20;

Tally s_interrupts("interrupts");

class InterruptSweep : public testing::Test
{
protected:
    ~InterruptSweep() override
    {
        Persistable::deleteAll();
        Scripted::onRead = nullptr;
        Scripted::onFixup = nullptr;
    }

    /// Runs the action with an interrupt at the first check, the second, ... until it is through, and calls `check`
    /// after each interrupt, which has to delete what there is then. Returns the number of interrupts.
    template <class Action, class Check>
    std::size_t interruptEach(Action action, Check check)
    {
        for (std::size_t number = 1;; ++number)
        {
            SCOPED_TRACE(testing::Message() << "check " << number);
            status.reset();
            std::exchange(platform->calls, {});
            const std::size_t before = FailingAllocation::getLiveBlocks();
            status.emplace();
            status->interruptAt(number);
            bool interrupted = false;
            try
            {
                action();
            }
            catch (const Interrupted&)
            {
                interrupted = true;
            }
            EXPECT_EQ(status->isInterrupted(), interrupted);
            status->resetInterrupts();
            status->interruptAt(0);
            if (!interrupted)
                return number - 1;
            s_interrupts.add();
            check(number);
            status.reset();
            std::exchange(platform->calls, {});
            EXPECT_EQ(FailingAllocation::getLiveBlocks(), before);
            if (HasFailure())
                return number;
        }
    }

    /// A chain of objects that let time pass while they are written and read, so that every check is an update.
    Scripted* makeChain()
    {
        Scripted::onRead = [this](Scripted& object, Reader& reader)
        {
            status->elapse();
            reader.read(object.number).read(object.reference);
        };
        Scripted::onFixup = [](Scripted& object, Reader& reader)
        {
            reader.fix(object.reference);
            return true;
        };
        Scripted* next = nullptr;
        for (std::size_t i = s_objects; i > 0; --i)
        {
            auto* const object = new Scripted;
            object->number = static_cast<int>(i);
            object->reference = next;
            object->onWrite = [this, object](Writer& writer)
            {
                status->elapse();
                writer.write(object->number + m_offset);
                writer.writeObj(dynamic_cast<Serializable*>(object->reference));
            };
            next = object;
        }
        return next;
    }

    Kel::File getFile() const { return Ztring(directory / "model"); }

    void save(Serializable& root, int offset)
    {
        m_offset = offset;
        FileWriter writer;
        writer.open(getFile(), true)->writeObj(&root);
        writer.close();
    }

    /// The number of the last object of the chain in the file; 0 where the chain is not whole.
    int open()
    {
        FileReader reader;
        const auto* object = dynamic_cast<const Scripted*>(reader.open(getFile(), true)->perform());
        for (std::size_t i = 1; i < s_objects && object; ++i)
            object = dynamic_cast<const Scripted*>(object->reference);
        return object ? object->number : 0;
    }

    Installed<TestPlatform> platform;
    TemporaryDirectory directory;
    std::optional<TestStatus> status{std::in_place};

private:
    int m_offset = 0;
};

/// Counts the document up by one and lets time pass.
class Count : public Memento
{
public:
    Count(int& document, TestStatus& status) : m_document(document), m_status(status) { ++s_count; }
    ~Count() override { --s_count; }

    void execute() override
    {
        ++m_document;
        m_status.elapse();
    }
    void undo() override { --m_document; }

    static inline std::size_t s_count = 0;

private:
    int& m_document;
    TestStatus& m_status;
};

class CountMany : public Command
{
public:
    CountMany(int& document, TestStatus& status)
    {
        for (std::size_t i = 0; i < s_objects; ++i)
            m_steps.add(new Count(document, status));
    }

    void execute() override { m_steps.execute(); }
    void undo() override { m_steps.undo(); }
    void redo() override { m_steps.redo(); }
    Ztring getLabel() const override { return "count"; }

private:
    Mementos m_steps;
};
} // namespace

TEST_F(InterruptSweep, InterruptedSaveLeavesTheOldFile)
{
    Scripted* const root = makeChain();
    save(*root, 100);
    const std::string old = directory.read("model");
    const std::size_t interrupts = interruptEach([&] { save(*root, 200); },
                                                 [&](std::size_t)
                                                 {
                                                     EXPECT_EQ(directory.read("model"), old);
                                                     EXPECT_FALSE(directory.has("model.tmp"));
                                                     EXPECT_EQ(Persistable::getCount(), s_objects);
                                                 });
    ASSERT_EQ(interrupts, s_objects);
    Persistable::deleteAll();
    EXPECT_EQ(open(), 200 + static_cast<int>(s_objects));
}

TEST_F(InterruptSweep, InterruptedOpeningLeavesTheFileToBeOpenedAgain)
{
    save(*makeChain(), 100);
    const std::string file = directory.read("model");
    Persistable::deleteAll();
    // What lives as long as the process is made first.
    open();
    Persistable::deleteAll();
    const std::size_t interrupts = interruptEach([this] { open(); },
                                                 [&](std::size_t number)
                                                 {
                                                     EXPECT_EQ(Persistable::getCount(), number);
                                                     Persistable::deleteAll();
                                                     EXPECT_EQ(directory.read("model"), file);
                                                     EXPECT_EQ(open(), 100 + static_cast<int>(s_objects));
                                                     Persistable::deleteAll();
                                                 });
    ASSERT_EQ(interrupts, s_objects);
}

TEST_F(InterruptSweep, InterruptedCommandIsUndoneAndRedoneAsFarAsItRan)
{
    {
        // What lives as long as the process is made first.
        int document = 0;
        CommandController controller;
        controller.execute(new CountMany(document, *status));
    }
    for (std::size_t number = 1; number <= s_objects; ++number)
    {
        status.reset();
        const std::size_t before = FailingAllocation::getLiveBlocks();
        {
            int document = 0;
            CommandController controller;
            TestStatus& shown = status.emplace();
            shown.interruptAt(number);
            s_interrupts.add();
            controller.execute(new CountMany(document, shown));
            const int done = static_cast<int>(number);
            EXPECT_EQ(document, done);
            EXPECT_EQ(Count::s_count, number);
            EXPECT_TRUE(shown.isInterrupted());
            // Neither undo nor redo looks at the interrupt.
            controller.undo();
            EXPECT_EQ(document, 0);
            controller.redo();
            EXPECT_EQ(document, done);
            controller.undo();
            EXPECT_EQ(document, 0);
        }
        EXPECT_EQ(Count::s_count, 0u);
        status.reset();
        EXPECT_EQ(FailingAllocation::getLiveBlocks(), before);
    }
}

TEST_F(InterruptSweep, InterruptedFormHoldsABeginningOfItsFile)
{
    constexpr std::size_t blockSize = 4096;
    const std::string content(s_objects * blockSize, 'x');
    const Kel::File file(Ztring(directory.write("data", content)));
    FormDataPoster head;
    head.addFileSection("file", "data", "text/plain");
    const std::size_t headSize = head.getBody().size();
    std::unique_ptr<FormDataPoster> form;
    const std::size_t interrupts = interruptEach(
        [&]
        {
            // Every check is an update.
            status->setUpdateInterval(0);
            form = std::make_unique<FormDataPoster>();
            form->addFile("file", "data", "text/plain", file);
        },
        [&](std::size_t number)
        {
            EXPECT_EQ(form->getBody().size(), headSize + number * blockSize);
            form = std::make_unique<FormDataPoster>();
            form->addFile("file", "data", "text/plain", file);
            EXPECT_EQ(form->getBody().toUtf8(), head.getBody().toUtf8() + content + "\r\n");
            form.reset();
        });
    ASSERT_EQ(interrupts, s_objects);
    EXPECT_EQ(form->getBody().size(), headSize + content.size() + 2);
}
