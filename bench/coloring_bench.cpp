// Colouring throughput in memory: a generated document of about a million
// elements, coloured by a scheme of ten rules of two conditions each, as a
// whole document (context 13) and as a selection (context 10, where missing
// attributes are inherited from ancestors), with and without blank-separated
// values. Reports elements per second; nothing here asserts a time.
#include "coloring/ColoringEngine.h"
#include "coloring/RuleColors.h"
#include "frame/PluginState.h"
#include "host/headless/HeadlessHost.h"
#include "host/headless/ScriptedAgent.h"
#include "host/headless/TreeBuilder.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace voka;
using namespace voka::headless;

constexpr int kSections = 1000;
constexpr int kParagraphsPerSection = 999;  // with the sections and the root: 1,001,000 elements

// Values as authors write them: most paragraphs carry their own, some leave
// them empty (their section's values apply), and with blank-separated
// values some list two words.
std::vector<AttrValue> paragraphAttributes(int i, bool twoWords) {
    static const char* const kAudiences[] = {"novice", "expert", "admin", ""};
    static const char* const kPlatforms[] = {"linux", "windows", "mac", "", "linux"};
    std::string audience = kAudiences[i % 4];
    if (twoWords && i % 3 == 0 && !audience.empty()) audience += " expert";
    std::vector<AttrValue> attributes;
    if (!audience.empty()) attributes.emplace_back("audience", audience);
    std::string platform = kPlatforms[i % 5];
    if (!platform.empty()) attributes.emplace_back("platform", platform);
    return attributes;
}

struct BenchDocument {
    explicit BenchDocument(bool twoWords)
        : folder(std::filesystem::temp_directory_path() / "voka-coloring-bench"), host(HostConfig{folder.string()}, agent) {
        std::filesystem::create_directories(folder);
        TreeBuilder b;
        b.define("Para", kElementContainer,
                 {{"audience", kAttrString, 0, {}, {}}, {"platform", kAttrString, 0, {}, {}},
                  {"product", kAttrString, 0, {}, {}}});
        b.open("Manual", {{"product", "voka"}});
        for (int s = 0; s < kSections; ++s) {
            b.open("Section", {{"audience", s % 2 ? "expert" : "novice"}, {"platform", "linux"}});
            for (int p = 0; p < kParagraphsPerSection; ++p) b.leaf("Para", paragraphAttributes(p, twoWords), "text ");
            b.close();
        }
        b.close();
        doc = b.build(host, "\\bench\\manual.xml");
        root = host.highestLevelElement(doc, host.mainFlow(doc));
    }

    std::filesystem::path folder;
    ScriptedAgent agent;
    HeadlessHost host;
    Handle doc = kNoObject;
    Handle root = kNoObject;
};

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
