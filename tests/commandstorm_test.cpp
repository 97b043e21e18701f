// SPDX-License-Identifier: MIT
// Random sequences of commands that succeed, fail and use the controller from inside themselves, beside a simple model
// of the stacks. KEL_STORM_ROUNDS sets the number of rounds.
#include <kel/changedreceiver.h>
#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/problem.h>
#include <kel/receiver.h>
#include <kel/undoredostate.h>

#include "support/tally.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace
{
unsigned getRounds(unsigned usual)
{
    const char* const rounds = std::getenv("KEL_STORM_ROUNDS");
    return rounds ? static_cast<unsigned>(std::strtoul(rounds, nullptr, 10)) : usual;
}

struct Thrown
{
};

using Ids = std::vector<int>;

std::string getLabel(const Ids& stack)
{
    return stack.empty() ? std::string() : std::to_string(stack.back());
}

class Storm : public Receiver, public ChangedReceiver
{
public:
    explicit Storm(unsigned seed) : m_random(seed)
    {
        m_controller.setMaximumUndo(8);
        observe(m_controller);
    }
    ~Storm() override
    {
        for (Command* const command : m_abandoned)
            delete command;
    }
    Storm(const Storm&) = delete;
    Storm& operator=(const Storm&) = delete;

    void blow()
    {
        m_actions = 20;
        act();
        compare();
    }

    unsigned getDifferences() const { return m_differences; }

    void changed(Bulletin&, const Bulletin& how) override
    {
        const auto& state = dynamic_cast<const UndoRedoState&>(how);
        const std::string undo = state.hasUndo() ? state.getUndo().toUtf8() : std::string();
        const std::string redo = state.hasRedo() ? state.getRedo().toUtf8() : std::string();
        m_heard.emplace_back(undo, redo);
    }

private:
    class Step : public Command
    {
    public:
        Step(Storm& storm, int id, bool isUndoable) : m_storm(storm), m_id(id), m_isUndoable(isUndoable)
        {
            m_storm.m_alive.insert(id);
        }
        ~Step() override { m_storm.m_alive.erase(m_id); }

        void execute() override { m_storm.perform(); }
        void undo() override
        {
            m_storm.expect(m_storm.m_expected == m_id);
            m_storm.perform();
        }
        void redo() override
        {
            m_storm.expect(m_storm.m_expected == m_id);
            m_storm.perform();
            if (m_storm.pick(50) == 0)
            {
                m_isUndoable = false;
                m_storm.m_abandoned.push_back(this);
                m_storm.m_given = m_id;
            }
        }
        bool isUndoable() const override { return m_isUndoable; }
        Ztring getLabel() const override { return std::to_string(m_id); }

    private:
        Storm& m_storm;
        const int m_id;
        bool m_isUndoable;
    };

    std::size_t pick(std::size_t count) { return m_random() % count; }

    void expect(bool condition) { m_differences += !condition; }

    /// What commands do: now and then use the controller, now and then fail.
    void perform()
    {
        if (pick(4) == 0)
            act();
        if (pick(8) == 0)
            throw Thrown();
    }

    void act()
    {
        if (m_actions == 0)
            return;
        --m_actions;
        switch (pick(12))
        {
        case 0:
        case 1:
        case 2:
            undo();
            break;
        case 3:
        case 4:
            redo();
            break;
        case 5:
            prune();
            break;
        case 6:
            clear();
            break;
        default:
            execute(pick(5) != 0);
        }
    }

    void announce() { m_expectedToHear.emplace_back(getLabel(m_undo), getLabel(m_redo)); }

    void execute(bool isUndoable)
    {
        const int id = m_next++;
        try
        {
            m_controller.execute(new Step(*this, id, isUndoable));
        }
        catch (const Thrown&)
        {
            return expect(!m_alive.contains(id));
        }
        if (!isUndoable)
            return expect(!m_alive.contains(id));
        m_redo.clear();
        m_undo.push_back(id);
        announce();
    }

    void undo()
    {
        if (m_undo.empty())
            return expectProblem([this] { m_controller.undo(); });
        const int id = m_undo.back();
        m_undo.pop_back();
        m_expected = id;
        try
        {
            m_controller.undo();
            m_redo.push_back(id);
        }
        catch (const Thrown&)
        {
            m_undo.clear();
        }
        announce();
    }

    void redo()
    {
        if (m_redo.empty())
            return expectProblem([this] { m_controller.redo(); });
        const int id = m_redo.back();
        m_redo.pop_back();
        m_expected = id;
        try
        {
            m_controller.redo();
            m_undo.push_back(id);
        }
        catch (const Thrown&)
        {
            m_redo.clear();
        }
        catch (const Problem&)
        {
            // It does not want to be undone once more: neither on a stack nor deleted.
            return expect(m_given == id && m_alive.contains(id));
        }
        announce();
    }

    void prune()
    {
        const std::size_t size = m_undo.size();
        const bool isOver = size > 8;
        const bool isStillOver = m_controller.pruneUndo();
        if (isOver)
            m_undo.erase(m_undo.begin());
        expect(isStillOver == (isOver && size - 1 > 8));
    }

    void clear()
    {
        const std::size_t which = pick(4);
        if (which != 1)
            m_undo.clear();
        if (which != 2)
            m_redo.clear();
        if (which == 1)
            return m_controller.clearRedo();
        if (which == 2)
            return m_controller.clearUndo();
        m_controller.clear();
        announce();
    }

    void expectProblem(const std::function<void()>& action)
    {
        try
        {
            action();
            expect(false);
        }
        catch (const Problem&)
        {
        }
    }

    void compare()
    {
        expect(m_heard == m_expectedToHear);
        m_heard.clear();
        m_expectedToHear.clear();
        expect(m_alive.size() == m_undo.size() + m_redo.size() + m_abandoned.size());
        for (const Ids* const stack : {&m_undo, &m_redo})
        {
            for (const int id : *stack)
                expect(m_alive.contains(id));
        }
        const UndoRedoState state = m_controller.getUndoRedoState();
        expect(state.hasUndo() != m_undo.empty());
        expect(state.hasRedo() != m_redo.empty());
    }

    std::mt19937 m_random;
    std::set<int> m_alive;
    std::vector<Command*> m_abandoned;
    CommandController m_controller;
    Ids m_undo;
    Ids m_redo;
    int m_next = 1;
    int m_expected = 0;
    int m_given = 0;
    unsigned m_actions = 0;
    unsigned m_differences = 0;
    std::vector<std::pair<std::string, std::string>> m_heard;
    std::vector<std::pair<std::string, std::string>> m_expectedToHear;
};

Tally s_rounds("rounds without a difference from the model");
} // namespace

TEST(CommandStorm, StacksAndAnnouncementsAreThoseOfTheModel)
{
    for (unsigned round = 0; round < getRounds(20000);)
    {
        const unsigned first = round;
        Storm storm(round);
        for (int i = 0; i < 200; ++i, ++round)
            storm.blow();
        ASSERT_EQ(storm.getDifferences(), 0u) << "before round " << round;
        s_rounds.add(round - first);
    }
}
