// Colouring throughput in memory: a generated document of about a million
// elements, coloured by a scheme of ten rules of two conditions each, as a
// whole document (context 13) and as a selection (context 10, where missing
// attributes are inherited from ancestors), with and without blank-separated
// values. Reports elements per second; nothing here asserts a time.
#include "coloring/ColoringEngine.h"
#include "coloring/RuleColors.h"
#include "frame/PluginState.h"
#include "BenchManual.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace voka;
using namespace voka::headless;
using voka::bench::BenchDocument;
using voka::bench::kParagraphsPerSection;
using voka::bench::kSections;

// Ten rules of two conditions; most elements fall through several rules and
// many through all ten, which is the costly case.
void loadScheme(PluginState& state, bool spaceDelimited) {
    struct Spec {
        const char* color;
        const char* attribute1;
        const char* value1;
        const char* attribute2;
        const char* value2;
        int matchAll;
    };
    static const Spec kRules[] = {
        {"Red", "audience", "beta", "platform", "solaris", 0},
        {"Green", "audience", "gamma", "product", "other", 0},
        {"Blue", "platform", "bsd", "audience", "delta", 0},
        {"Cyan", "audience", "admin", "platform", "mac", 1},
        {"Magenta", "product", "legacy", "platform", "aix", 0},
        {"Yellow", "audience", "epsilon", "platform", "hpux", 0},
        {"Red", "audience", "novice", "platform", "windows", 1},
        {"Green", "audience", "zeta", "product", "<no value>", 1},
        {"Blue", "platform", "irix", "audience", "eta", 0},
        {"<skip>", "audience", "expert", "platform", "linux", 1},
    };
    state.coloring = ColoringScheme{};
    state.coloring.options.spaceDelimited = spaceDelimited ? 1 : 0;
    for (const Spec& spec : kRules) {
        ColorRule rule;
        rule.colorName = spec.color;
        rule.matchAll = spec.matchAll;
        rule.style = 3;
        rule.conditions = {{spec.attribute1, {spec.value1}}, {spec.attribute2, {spec.value2}}};
        state.coloring.rules.push_back(rule);
    }
    state.coloring.loaded = true;
    state.active.coloringScheme = "Bench";
}

void colorDocument(benchmark::State& run, bool spaceDelimited, int context) {
    BenchDocument bench(spaceDelimited);
    PluginState state;
    state.coloringOptions.warnMissingColors = 0;
    loadScheme(state, spaceDelimited);
    std::string missing;
    ResolveRuleColors(bench.host, state, bench.doc, missing);
    const std::int64_t elements = 1 + kSections * (1 + kParagraphsPerSection);
    for (auto _ : run) {
        int result = ColorElementTree(bench.host, state, bench.doc, bench.root, context, 1, 0);
        benchmark::DoNotOptimize(result);
    }
    run.SetItemsProcessed(run.iterations() * elements);
    run.counters["elements/s"] = benchmark::Counter(static_cast<double>(run.iterations() * elements),
                                                    benchmark::Counter::kIsRate);
}

void BM_ColorDocument(benchmark::State& run) { colorDocument(run, false, 13); }
void BM_ColorDocumentSpaceDelimited(benchmark::State& run) { colorDocument(run, true, 13); }
void BM_ColorSelectionInheriting(benchmark::State& run) { colorDocument(run, false, 10); }
void BM_ColorSelectionInheritingSpaceDelimited(benchmark::State& run) { colorDocument(run, true, 10); }

BENCHMARK(BM_ColorDocument)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ColorDocumentSpaceDelimited)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ColorSelectionInheriting)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ColorSelectionInheritingSpaceDelimited)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
