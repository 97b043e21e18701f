// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include "benchmarks.h"
#include "graph.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

/// The rows about graphs, written once for all contenders.
///
/// A contender is a class `Model` with
///
///     explicit Model(const bench::Graph&);                  // builds its objects
///     Saved save() const;                                   // to memory, in whatever form it likes best
///     void save(const std::string& path) const;             // to a file
///     using Source;                                         // bytes to open from, made of a std::string
///     static std::unique_ptr<Model> open(Source&);          // from memory; a source can be opened again and again
///     static std::unique_ptr<Model> openFile(const std::string& path);
///     uint64_t getDigest() const;                           // see bench::Digest
namespace bench
{
template <class Model>
class GraphRows
{
public:
    static bool add(const std::string& contender)
    {
        bench::add("save_memory", contender, objects, saveToMemory);
        bench::add("save_file", contender, objects,
                   [contender](benchmark::State& state) { saveToFile(state, contender); });
        bench::add("open_memory", contender, objects,
                   [contender](benchmark::State& state) { openFromMemory(state, contender); });
        bench::add("open_file", contender, objects,
                   [contender](benchmark::State& state) { openFromFile(state, contender); });
        bench::add("deep_list", contender, objects,
                   [contender](benchmark::State& state) { saveAndOpenList(state, contender); });
        return addCheck("graph of " + contender, [contender] { check(contender); });
    }

private:
    using State = benchmark::State;

    static size_t count(const State& state) { return static_cast<size_t>(state.range(0)); }

    static std::string path(const std::string& contender, size_t count)
    {
        return (folder() / (contender + "-" + std::to_string(count) + ".graph")).string();
    }

    static void finish(State& state)
    {
        state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
    }

    static void saveToMemory(State& state)
    {
        const Model model{Graph(count(state))};
        warmUp([&model] { model.save(); });
        for (auto _ : state)
            benchmark::DoNotOptimize(model.save());
        finish(state);
    }

    static void saveToFile(State& state, const std::string& contender)
    {
        const Model model{Graph(count(state))};
        const std::string file = path(contender, count(state));
        warmUp([&] { model.save(file); });
        for (auto _ : state)
            model.save(file);
        finish(state);
    }

    /// The file that a run of `saveToFile` left, or a new one: whoever wants the peak memory of opening saves before,
    /// in another process.
    static std::string savedFile(const std::string& contender, size_t count)
    {
        const std::string file = path(contender, count);
        if (!std::filesystem::exists(file))
            Model(Graph(count)).save(file);
        return file;
    }

    template <class Open>
    static void measureOpening(State& state, const Open& open)
    {
        warmUp(open);
        for (auto _ : state)
        {
            std::unique_ptr<Model> model = open();
            benchmark::DoNotOptimize(model.get());
            state.PauseTiming();
            model.reset();
            state.ResumeTiming();
        }
        finish(state);
    }

    static void openFromMemory(State& state, const std::string& contender)
    {
        typename Model::Source source(contents(savedFile(contender, count(state))));
        measureOpening(state, [&source] { return Model::open(source); });
    }

    static void openFromFile(State& state, const std::string& contender)
    {
        const std::string file = savedFile(contender, count(state));
        measureOpening(state, [&file] { return Model::openFile(file); });
    }

    static void saveAndOpenList(State& state, const std::string& contender)
    {
        const Graph list(count(state), Graph::Shape::List);
        const std::string file = path("list-" + contender, count(state));
        for (auto _ : state)
        {
            Model(list).save(file);
            require(Model::openFile(file)->getDigest() == list.getDigest(), "the list is not the one that was saved");
        }
        finish(state);
    }

    static void check(const std::string& contender)
    {
        const Graph graph(1000);
        const Model model(graph);
        require(model.getDigest() == graph.getDigest(), "the graph is built wrongly");

        const std::string file = path(contender, graph.size());
        model.save(file);
        require(Model::openFile(file)->getDigest() == graph.getDigest(), "the file gives another graph");
        typename Model::Source source(contents(file));
        for (int times = 0; times < 2; ++times)
            require(Model::open(source)->getDigest() == graph.getDigest(), "the memory gives another graph");
        require(static_cast<size_t>(model.save().size()) > graph.size() * 20, "too few bytes are saved");
    }

    static void require(bool condition, const char* otherwise)
    {
        if (!condition)
            throw std::runtime_error(otherwise);
    }
};
} // namespace bench
