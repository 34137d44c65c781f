// Filter verdicts in memory (elements per second): a generated document of
// about a million elements tested against a scheme of three conditions, as
// the filter walk tests them, with and without blank-separated values.
// Nothing here asserts a time.
#include "filtering/FilterVerdict.h"
#include "frame/PluginState.h"
#include "host/headless/HeadlessHost.h"
#include "host/headless/ScriptedAgent.h"
#include "host/headless/TreeBuilder.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace voka;
using namespace voka::headless;

constexpr int kSections = 1000;
constexpr int kParagraphsPerSection = 999;

struct BenchDocument {
    BenchDocument()
        : folder(std::filesystem::temp_directory_path() / "voka-filter-bench"), host(HostConfig{folder.string()}, agent) {
        std::filesystem::create_directories(folder);
        static const char* const kAudiences[] = {"novice", "expert", "admin novice", ""};
        static const char* const kPlatforms[] = {"linux", "windows", "mac", "", "linux"};
        TreeBuilder b;
        b.define("Para", kElementContainer,
                 {{"audience", kAttrString, 0, {}, {}}, {"platform", kAttrString, 0, {}, {}},
                  {"product", kAttrString, 0, {}, {}}});
        b.open("Manual", {{"product", "voka"}});
        for (int s = 0; s < kSections; ++s) {
            b.open("Section", {{"audience", s % 2 ? "expert" : "novice"}, {"platform", "linux"}});
            for (int p = 0; p < kParagraphsPerSection; ++p) {
                std::vector<AttrValue> attributes;
                if (*kAudiences[p % 4]) attributes.emplace_back("audience", kAudiences[p % 4]);
                if (*kPlatforms[p % 5]) attributes.emplace_back("platform", kPlatforms[p % 5]);
                b.leaf("Para", attributes, "text ");
            }
            b.close();
        }
        b.close();
        doc = b.build(host, "\\bench\\manual.xml");
        for (Handle section = host.firstChild(doc, host.highestLevelElement(doc, host.mainFlow(doc)));
             section != kNoObject; section = host.nextSibling(doc, section)) {
            elements.push_back(section);
            for (Handle p = host.firstChild(doc, section); p != kNoObject; p = host.nextSibling(doc, p))
                elements.push_back(p);
        }
    }

    std::filesystem::path folder;
    ScriptedAgent agent;
    HeadlessHost host;
    Handle doc = kNoObject;
    std::vector<Handle> elements;
};

void verdicts(benchmark::State& run, bool spaceDelimited) {
    static BenchDocument bench;
    PluginState state;
    state.filter.options.spaceDelimited = spaceDelimited ? 1 : 0;
    state.filter.rules = {{"audience", {"<no value>", "novice", "expert"}},
                          {"platform", {"<no value>", "linux", "mac"}},
                          {"product", {"<any value>"}}};
    FilterContext context;
    prepareFilter(state, bench.doc, context);
    for (auto _ : run) {
        int removed = 0;
        for (Handle element : bench.elements) removed += filterVerdictIn(bench.host, context, element);
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
