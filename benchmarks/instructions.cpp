// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Runs the most important paths of the library once, for `check-instructions` to count the instructions of each. Sizes
// are small, since counts hardly vary from run to run. Nothing but the named work is counted.
#include "libkel/application.h"
#include "libkel/graphmodel.h"

#include <kel/bulletin.h>
#include <kel/bulletinboard.h>
#include <kel/changedreceiver.h>
#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/othertasks.h>
#include <kel/problem.h>
#include <kel/reader.h>
#include <kel/receiver.h>
#include <kel/status.h>
#include <kel/task.h>
#include <kel/tasks.h>
#include <kel/ztring.h>

#include <valgrind/callgrind.h>

#include <clocale>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace
{
constexpr unsigned s_count = 1000;

/// Counts the instructions of the work under a name; a first run outside of the count resolves symbols and fills pools.
template <class Before, class Work>
void count(const char* name, const Before& before, const Work& work)
{
    before();
    work();
    before();
    CALLGRIND_START_INSTRUMENTATION;
    work();
    CALLGRIND_STOP_INSTRUMENTATION;
    CALLGRIND_DUMP_STATS_AT(name);
}

template <class Work>
void count(const char* name, const Work& work)
{
    count(
        name, [] {}, work);
}

template <class Step>
void repeat(const Step& step)
{
    for (unsigned i = 0; i < s_count; ++i)
        step();
}

class Listener : public Receiver, public ChangedReceiver
{
public:
    void changed(Bulletin&, const Bulletin&) override { ++m_count; }

private:
    unsigned m_count = 0;
};

class Add : public Command
{
public:
    explicit Add(int& value) : m_value(value) {}
    void execute() override { ++m_value; }
    void undo() override { --m_value; }
    Ztring getLabel() const override { return "Add"; }

private:
    int& m_value;
};

class Step : public Task
{
public:
    void performAction() override { ++m_count; }
    bool repeat() override { return m_count < s_count; }

private:
    unsigned m_count = 0;
};

void countGraph()
{
    using Model = kelgraph::Model<Ztring>;
    const Model model{bench::Graph(s_count)};
    count("save", [&] { model.save(); });

    Model::Source source(model.save());
    std::unique_ptr<Model> opened;
    count(
        "open", [&] { opened.reset(); }, [&] { opened = Model::open(source); });
}

/// Streams that claim 4294967295 bytes or entries where there are a few: of a text, versions, a name, a collection.
/// A reader that fails leaves the objects made so far to the process.
void countRefusals()
{
    const std::string head = "4 Test \n0 \n";
    bench::StreamSource claims[] = {
        bench::StreamSource("4294967295 Test \n"),
        bench::StreamSource("4 Test \n4294967295 6 Solver 1 2 3 \n"),
        bench::StreamSource(head + "0 4294967295 Document \n"),
        bench::StreamSource(head + "0 8 Document 4294967295 1 1 1 \n"),
    };
    unsigned next = 0;
    const auto refuse = [&]
    {
        try
        {
            Reader(claims[next++ % std::size(claims)].rewind(), "Test", false).perform();
        }
        catch (const Problem&)
        {
            return;
        }
        std::abort();
    };
    count("refuse", [&] { repeat(refuse); });
}

void countNotifications()
{
    Bulletin sender;
    std::vector<Listener> listeners(10);
    for (Listener& listener : listeners)
        listener.observe(sender);
    count("notify", [&] { repeat([&] { sender.notifyChanged(); }); });

    Bulletin watchedOnce;
    listeners.front().observe(watchedOnce);
    count("notify_one", [&] { repeat([&] { watchedOnce.notifyChanged(); }); });

    Listener listener;
    const auto attachAndDetach = [&]
    {
        listener.observe(sender);
        listener.unobserve(sender);
    };
    count("attach", [&] { repeat(attachAndDetach); });
}

void countCommands()
{
    int value = 0;
    CommandController controller;
    Listener menu;
    menu.observe(controller);
    const auto executeAll = [&] { repeat([&] { controller.execute(new Add(value)); }); };
    const auto undoAll = [&] { repeat([&] { controller.undo(); }); };
    const auto redoAll = [&] { repeat([&] { controller.redo(); }); };
    const auto clear = [&] { controller.clear(); };
    const auto begin = [&]
    {
        clear();
        executeAll();
    };
    count("execute", clear, executeAll);
    count("undo", begin, undoAll);
    count(
        "redo",
        [&]
        {
            begin();
            undoAll();
        },
        redoAll);
}

void countBoard()
{
    BulletinBoard board;
    std::vector<Bulletin> bulletins(s_count);
    const auto addAndRemove = [&]
    {
        for (Bulletin& bulletin : bulletins)
            board.add(&bulletin);
        for (Bulletin& bulletin : bulletins)
            board.remove(bulletin);
    };
    count("board", addAndRemove);
    for (Bulletin& bulletin : bulletins)
        board.add(&bulletin);
    count("find",
          [&]
          {
              for (const Bulletin& bulletin : bulletins)
                  board.hasKey(bulletin.getKey());
          });
    for (Bulletin& bulletin : bulletins)
        board.remove(bulletin);
    count("bulletin", [] { repeat([] { Bulletin::destroy(new Bulletin, false); }); });
}

void countTasks()
{
    count("interrupt", [] { repeat([] { Status::getSingleton().checkInterrupt(-1); }); });
    const auto runAll = []
    {
        while (Tasks::getSingleton()->onIdle())
            ;
        while (OtherTasks::getSingleton()->onIdle())
            ;
    };
    count(
        "task", [] { Tasks::getSingleton()->add(new Step); }, runAll);
}
} // namespace

int main()
{
    std::setlocale(LC_ALL, "C.UTF-8");
    const BenchmarkStatus status;
    countGraph();
    countRefusals();
    countNotifications();
    countCommands();
    countBoard();
    countTasks();
    return 0;
}
