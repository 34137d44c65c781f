// Filter verdicts in memory (elements per second): the generated manual of
// about a million elements tested against a scheme of three conditions, as
// the filter walk tests them, with and without blank-separated values.
// Nothing here asserts a time.
#include "filtering/FilterVerdict.h"
#include "frame/PluginState.h"
#include "BenchManual.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

using namespace voka;
using namespace voka::headless;

// The manual's elements in document order, as the filter walk meets them.
struct BenchElements {
    BenchElements() : manual(true) {
        Host& host = manual.host;
        elements.push_back(manual.root);
        for (Handle section = host.firstChild(manual.doc, manual.root); section != kNoObject;
             section = host.nextSibling(manual.doc, section)) {
            elements.push_back(section);
            for (Handle p = host.firstChild(manual.doc, section); p != kNoObject; p = host.nextSibling(manual.doc, p))
                elements.push_back(p);
        }
    }
    voka::bench::BenchDocument manual;
    std::vector<Handle> elements;
};

void verdicts(benchmark::State& run, bool spaceDelimited) {
    static BenchElements bench;
    PluginState state;
    state.filter.options.spaceDelimited = spaceDelimited ? 1 : 0;
    state.filter.rules = {{"audience", {"<no value>", "novice", "expert"}},
                          {"platform", {"<no value>", "linux", "mac"}},
                          {"product", {"<any value>"}}};
    FilterContext context;
    prepareFilter(state, bench.manual.doc, context);
    for (auto _ : run) {
        int removed = 0;
        for (Handle element : bench.elements) removed += filterVerdictIn(bench.manual.host, context, element);
        benchmark::DoNotOptimize(removed);
    }
    const auto elements = static_cast<std::int64_t>(bench.elements.size());
    run.SetItemsProcessed(run.iterations() * elements);
    run.counters["elements/s"] = benchmark::Counter(static_cast<double>(run.iterations() * elements),
                                                    benchmark::Counter::kIsRate);
}

void BM_FilterVerdicts(benchmark::State& run) { verdicts(run, false); }
void BM_FilterVerdictsSpaceDelimited(benchmark::State& run) { verdicts(run, true); }

BENCHMARK(BM_FilterVerdicts)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FilterVerdictsSpaceDelimited)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
