// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/simpletask.h>

#include <kel/othertasks.h>

#include <gtest/gtest.h>

namespace
{
class Window
{
public:
    virtual ~Window() = default;
    virtual void refresh() { ++refreshed; }

    int refreshed = 0;
};

class DoubleWindow : public Window
{
public:
    void refresh() override { refreshed += 2; }
};
} // namespace

TEST(SimpleTask, CallsTheMemberFunction)
{
    Window window;
    SimpleTask<Window> task(&window, &Window::refresh);
    task.execute();
    EXPECT_EQ(window.refreshed, 1);
}

TEST(SimpleTask, CallsTheOverrideOfAVirtualMemberFunction)
{
    DoubleWindow window;
    SimpleTask<Window> task(&window, &Window::refresh);
    task.execute();
    EXPECT_EQ(window.refreshed, 2);
}

TEST(SimpleTask, RunsOnceAndIsNotQuiet)
{
    Window window;
    OtherTasks& tasks = *OtherTasks::getSingleton();
    auto* const task = new SimpleTask<Window>(&window, &Window::refresh);
    EXPECT_FALSE(task->isQuiet());
    tasks.add(task);
    EXPECT_FALSE(tasks.onIdle());
    EXPECT_EQ(window.refreshed, 1);
}
