// SPDX-License-Identifier: MIT
// A task with progress: long work runs one step at a time from the idle loop and shows how far it has come.
// The user stops it after a while; the task is reported as interrupted and nothing unwinds into the loop.
#include <kel/dynamicfactory.h>
#include <kel/log_kel.h>
#include <kel/othertasks.h>
#include <kel/status.h>
#include <kel/task.h>
#include <kel/tasks.h>

#include <iostream>

namespace
{
class Meshing : public Task
{
public:
    void performAction() override
    {
        m_percent += 10;
        Status::getSingleton().sleep(300);                // stands for work that takes its time
        Status::getSingleton().checkInterrupt(m_percent); // throws once the user has asked to stop
    }

    bool repeat() override { return m_percent < 100 && !Status::getSingleton().isInterrupted(); }

private:
    int m_percent = 0;
};

class ProgressBar : public Status
{
    void updateEvents(int percent) override
    {
        std::cout << percent << "%\n";
        if (percent == 40)
            setInterrupted(); // here an application handles its Stop button
    }
};

class Console : public Kel::Log
{
    void append(const Ztring& text, Message::Type) override { std::cout << text << '\n'; }
};
} // namespace

int main()
{
    ProgressBar status;
    DynamicFactory::getSingleton().add(new Console); // in place of the log that shows nothing

    Tasks::getSingleton()->add(new Meshing); // the queue owns it now
    while (Tasks::getSingleton()->onIdle() || OtherTasks::getSingleton()->onIdle())
        ;
    std::cout << "done\n";
}
