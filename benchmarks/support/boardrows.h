// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include "benchmarks.h"

#include <kel/bulletin.h>
#include <kel/bulletinkey.h>

#include <memory>
#include <string>
#include <vector>

namespace bench
{
/// The rows about boards, written once for all contenders. All hold the same bulletins under the same keys.
///
/// A contender is a class `Board` that does not own bulletins:
///
///     void add(Bulletin& bulletin);
///     Bulletin* find(const BulletinKey& key) const;
///     void remove(Bulletin& bulletin);
///     template <class F> void forEach(const F& f) const;     // in key order
///     void clear();
template <class Board>
class BoardRows
{
public:
    static bool add(const std::string& contender)
    {
        bench::add("board_add", contender, objects, addInOrder);
        bench::add("board_add_shuffled", contender, objects, addShuffled);
        bench::add("board_find", contender, objects, find);
        bench::add("board_remove", contender, objects, remove);
        return bench::add("board_iterate", contender, objects, iterate);
    }

private:
    using State = benchmark::State;
    using Bulletins = std::vector<std::unique_ptr<Bulletin>>;

    static Bulletins make(const State& state)
    {
        Bulletins bulletins(static_cast<size_t>(state.range(0)));
        for (std::unique_ptr<Bulletin>& bulletin : bulletins)
            bulletin = std::make_unique<Bulletin>();
        return bulletins;
    }

    static std::vector<Bulletin*> inOrder(const Bulletins& bulletins)
    {
        std::vector<Bulletin*> result;
        for (const std::unique_ptr<Bulletin>& bulletin : bulletins)
            result.push_back(bulletin.get());
        return result;
    }

    static std::vector<Bulletin*> atRandom(const Bulletins& bulletins)
    {
        std::vector<Bulletin*> result;
        for (const uint32_t number : shuffled(bulletins.size()))
            result.push_back(bulletins[number].get());
        return result;
    }

    static void addAll(Board& board, const std::vector<Bulletin*>& bulletins)
    {
        for (Bulletin* bulletin : bulletins)
            board.add(*bulletin);
    }

    static void measureAdding(State& state, const std::vector<Bulletin*>& bulletins)
    {
        warmUp(
            [&]
            {
                Board board;
                addAll(board, bulletins);
                board.clear();
            });
        for (auto _ : state)
        {
            state.PauseTiming();
            auto board = std::make_unique<Board>();
            state.ResumeTiming();
            addAll(*board, bulletins);
            state.PauseTiming();
            board->clear();
            board.reset();
            state.ResumeTiming();
        }
        state.SetItemsProcessed(state.iterations() * state.range(0));
    }

    static void addInOrder(State& state)
    {
        const Bulletins bulletins = make(state);
        measureAdding(state, inOrder(bulletins));
    }

    static void addShuffled(State& state)
    {
        const Bulletins bulletins = make(state);
        measureAdding(state, atRandom(bulletins));
    }

    static void find(State& state)
    {
        const Bulletins bulletins = make(state);
        Board board;
        addAll(board, inOrder(bulletins));
        std::vector<BulletinKey> keys;
        for (const Bulletin* bulletin : atRandom(bulletins))
            keys.push_back(bulletin->getKey());
        const auto findAll = [&]
        {
            for (const BulletinKey& key : keys)
                benchmark::DoNotOptimize(board.find(key));
        };
        warmUp(findAll);
        for (auto _ : state)
            findAll();
        state.SetItemsProcessed(state.iterations() * state.range(0));
        board.clear();
    }

    static void remove(State& state)
    {
        const Bulletins bulletins = make(state);
        const std::vector<Bulletin*> order = atRandom(bulletins);
        const auto removeAll = [&order](Board& board)
        {
            for (Bulletin* bulletin : order)
                board.remove(*bulletin);
        };
        warmUp(
            [&]
            {
                Board board;
                addAll(board, inOrder(bulletins));
                removeAll(board);
            });
        for (auto _ : state)
        {
            state.PauseTiming();
            auto board = std::make_unique<Board>();
            addAll(*board, inOrder(bulletins));
            state.ResumeTiming();
            removeAll(*board);
            state.PauseTiming();
            board.reset();
            state.ResumeTiming();
        }
        state.SetItemsProcessed(state.iterations() * state.range(0));
    }

    static void iterate(State& state)
    {
        const Bulletins bulletins = make(state);
        Board board;
        addAll(board, inOrder(bulletins));
        const auto walk = [&board]
        {
            board.forEach([](unsigned number, Bulletin* bulletin)
                          { benchmark::DoNotOptimize(reinterpret_cast<uintptr_t>(bulletin) + number); });
        };
        warmUp(walk);
        for (auto _ : state)
            walk();
        state.SetItemsProcessed(state.iterations() * state.range(0));
        board.clear();
    }
};
} // namespace bench
