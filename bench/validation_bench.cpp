// Validation throughput in memory (elements per second): the generated
// manual of about a million elements checked against a scheme of its three
// attributes, as Validate Selection walks it from the root with no report
// open. With rules 1 and 4 nothing is found, which is the walk and the check
// alone; with all four rules most paragraphs break rule 2 or 3, and each
// error is told into the findings. Nothing here asserts a time.
#include "frame/PluginState.h"
#include "validation/ValidationCheck.h"
#include "BenchManual.h"

#include <benchmark/benchmark.h>

namespace {

using namespace voka;
using voka::bench::BenchDocument;
using voka::bench::kParagraphsPerSection;
using voka::bench::kSections;

void validate(benchmark::State& run, bool spaceDelimited, bool allRules) {
    BenchDocument bench(spaceDelimited);
    PluginState state;
    state.validation.options.spaceDelimited = spaceDelimited ? 1 : 0;
    state.validation.rules = {{"audience", {"novice", "expert", "admin", "<no value>"}},
                              {"platform", {"linux", "windows", "mac", "<no value>"}},
                              {"product", {"voka", "<no value>"}}};
    state.active.validationScheme = "Bench";
    const int active[4] = {1, allRules ? 1 : 0, allRules ? 1 : 0, 1};
    for (int i = 0; i < 4; ++i) state.prefs.validationRuleActive[i] = active[i];
    const std::int64_t elements = 1 + kSections * (1 + kParagraphsPerSection);
    std::size_t found = 0;
    for (auto _ : run) {
        state.validationFindings.clear();
        int result = CheckSubtree(bench.host, state, bench.doc, bench.root, kValidateSelection);
        benchmark::DoNotOptimize(result);
        found = state.validationFindings.size();
    }
    run.SetItemsProcessed(run.iterations() * elements);
    run.counters["elements/s"] = benchmark::Counter(static_cast<double>(run.iterations() * elements),
                                                    benchmark::Counter::kIsRate);
    run.counters["findings"] = static_cast<double>(found);
}

void BM_ValidateNothingFound(benchmark::State& run) { validate(run, false, false); }
void BM_ValidateNothingFoundSpaceDelimited(benchmark::State& run) { validate(run, true, false); }
void BM_ValidateAllRules(benchmark::State& run) { validate(run, false, true); }

BENCHMARK(BM_ValidateNothingFound)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ValidateNothingFoundSpaceDelimited)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ValidateAllRules)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
