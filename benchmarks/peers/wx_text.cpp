// SPDX-License-Identifier: MIT
// libkel: benchmarks
// The same message with the formatting of wxString.
#include "support/benchmarks.h"

#include <wx/string.h>

namespace
{
void format(benchmark::State& state)
{
    const wxString pattern("Node %s of part %s lies outside of %s");
    const wxString number("4711");
    const wxString part("Upper chord");
    const wxString place("the building site");
    for (auto _ : state)
    {
        const wxString message = wxString::Format(pattern, number, part, place);
        benchmark::DoNotOptimize(message.length());
    }
    state.SetItemsProcessed(state.iterations());
}

const bool registered = bench::add("fill_text", "wx_format", bench::single, format);
} // namespace
