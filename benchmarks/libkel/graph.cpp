// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Saving and opening a graph; once with the texts as Ztring, once as UTF-8, and with progress shown.
#include "graphmodel.h"
#include "support/graphrows.h"

namespace
{
using KelModel = kelgraph::Model<Ztring>;

bench::Body saving(bool showStatus)
{
    return [showStatus](benchmark::State& state)
    {
        const KelModel model{bench::Graph(static_cast<size_t>(state.range(0)))};
        bench::warmUp([&] { model.save(showStatus); });
        for (auto _ : state)
            benchmark::DoNotOptimize(model.save(showStatus));
        state.SetItemsProcessed(state.iterations() * state.range(0));
    };
}

bench::Body opening(bool showStatus)
{
    return [showStatus](benchmark::State& state)
    {
        bench::StreamSource source(KelModel(bench::Graph(static_cast<size_t>(state.range(0)))).save());
        bench::warmUp([&] { KelModel::open(source, showStatus); });
        for (auto _ : state)
        {
            std::unique_ptr<KelModel> model = KelModel::open(source, showStatus);
            state.PauseTiming();
            model.reset();
            state.ResumeTiming();
        }
        state.SetItemsProcessed(state.iterations() * state.range(0));
    };
}

const bool registered = bench::GraphRows<KelModel>::add("libkel");
const bool registeredUtf8 = bench::GraphRows<kelgraph::Model<std::string>>::add("libkel_utf8");
const bool registeredProgress = bench::add("save_progress", "libkel", bench::objects, saving(true)) &&
                                bench::add("save_progress", "unshown", bench::objects, saving(false)) &&
                                bench::add("open_progress", "libkel", bench::objects, opening(true)) &&
                                bench::add("open_progress", "unshown", bench::objects, opening(false));
} // namespace
