// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include "benchmarks.h"

#include <string>

namespace bench
{
/// The rows about commands, written once for all contenders.
///
/// A contender is a class `Editor` with a stack of commands that somebody observes:
///
///     void execute();    // makes a command and executes it
///     void undo();
///     void redo();
///     void clear();      // forgets all commands
template <class Editor>
class CommandRows
{
public:
    static bool add(const std::string& contender)
    {
        return bench::add("execute", contender, objects, execute) && bench::add("undo", contender, objects, undo) &&
               bench::add("redo", contender, objects, redo);
    }

private:
    using State = benchmark::State;
    using Verb = void (Editor::*)();

    static void repeat(Editor& editor, Verb verb, const State& state)
    {
        for (int64_t i = 0; i < state.range(0); ++i)
            (editor.*verb)();
    }

    template <class Before>
    static void measure(State& state, const Before& before, Verb verb)
    {
        Editor editor;
        warmUp(
            [&]
            {
                before(editor);
                repeat(editor, verb, state);
                editor.clear();
            });
        for (auto _ : state)
        {
            state.PauseTiming();
            before(editor);
            state.ResumeTiming();
            repeat(editor, verb, state);
            state.PauseTiming();
            editor.clear();
            state.ResumeTiming();
        }
        state.SetItemsProcessed(state.iterations() * state.range(0));
    }

    static void execute(State& state)
    {
        measure(
            state, [](Editor&) {}, &Editor::execute);
    }

    static void undo(State& state)
    {
        measure(
            state, [&state](Editor& editor) { repeat(editor, &Editor::execute, state); }, &Editor::undo);
    }

    static void redo(State& state)
    {
        const auto executeAndUndo = [&state](Editor& editor)
        {
            repeat(editor, &Editor::execute, state);
            repeat(editor, &Editor::undo, state);
        };
        measure(state, executeAndUndo, &Editor::redo);
    }
};
} // namespace bench
