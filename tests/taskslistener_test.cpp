// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/taskslistener.h>

#include <gtest/gtest.h>

#include <memory>

TEST(TasksListener, IsDestroyedThroughItsInterface)
{
    class Indicator : public TasksListener
    {
    public:
        explicit Indicator(bool& isGone) : m_isGone(isGone) {}
        ~Indicator() override { m_isGone = true; }
        void tasksChanged(bool) override {}
        void enableMenu(bool) override {}

    private:
        bool& m_isGone;
    };
    bool isGone = false;
    std::unique_ptr<TasksListener> listener = std::make_unique<Indicator>(isGone);
    listener.reset();
    EXPECT_TRUE(isGone);
}
