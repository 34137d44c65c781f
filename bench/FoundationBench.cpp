// The foundation's figures on one generated input file: loading and saving
// it, walking every element through the host interface (with and without
// reading its attributes), and setting a text property over every
// element's range. Each reports elements per second.
//
//   voka_bench_foundation --input=FILE [benchmark flags]
//   voka_bench_foundation --oneshot=OPERATION --input=FILE [--output=FILE]
//
// The one-shot form runs one operation once and prints its seconds and the
// element count, for a caller that measures the process's peak memory
// (/usr/bin/time): load, load+save, walk, walk+attributes, set-property.
#include "host/headless/HeadlessHost.h"
#include "host/headless/HostPaths.h"
#include "host/headless/ScriptedAgent.h"
#include "host/headless/persist/Persist.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace {

using namespace voka;
using namespace voka::headless;

struct Options {
    std::string input;
    std::string output;
    std::string oneshot;
};

Options& options() {
    static Options o;  // set once from the command line, before any benchmark runs
    return o;
}

std::string scratchFolder() {
    auto folder = std::filesystem::temp_directory_path() / ("voka-bench-" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    return folder.string();
}

// A host with the input file open, as the plug-in would see it.
struct OpenHost {
    OpenHost() : host(HostConfig{scratchFolder()}, agent) {
        doc = host.open(toHostPath(std::filesystem::absolute(options().input).string()), OpenParams{false, false});
    }
    ScriptedAgent agent;
    HeadlessHost host;
    Handle doc = kNoObject;
};

// Pre-order over every element of the main flow through the host interface.
template <class Visit>
std::size_t walk(Host& host, Handle doc, Visit visit) {
    const Handle root = host.highestLevelElement(doc, host.mainFlow(doc));
    std::size_t count = 0;
    Handle e = root;
    while (e) {
        ++count;
        visit(e);
        if (Handle child = host.firstChild(doc, e)) {
            e = child;
            continue;
        }
        while (e && e != root) {
            if (Handle next = host.nextSibling(doc, e)) {
                e = next;
                break;
            }
            e = host.parent(doc, e);
        }
        if (e == root) break;
    }
    return count;
}

std::size_t readAttributes(Host& host, Handle doc) {
    std::size_t values = 0;
    walk(host, doc, [&](Handle e) {
        for (const Attribute& a : host.attributes(doc, e)) values += a.values.size();
    });
    return values;
}

// Alternating between two colours keeps every pass doing real work.
std::size_t colourEveryElement(Host& host, Handle doc, int pass) {
    const Handle color = host.namedObject(doc, kColorObject, pass % 2 ? "Red" : "Blue");
    return walk(host, doc, [&](Handle e) {
        host.setTextProperty(doc, host.elementTextRange(doc, e), TextProperty::Color, static_cast<int>(color));
    });
}

std::size_t elementCount(const Document& doc) { return doc.elements.size(); }

void BM_Load(benchmark::State& state) {
    std::size_t elements = 0;
    for (auto _ : state) {
        LoadResult loaded = loadFile(options().input);
        if (!loaded.document) return state.SkipWithError(loaded.error.c_str());
        elements = elementCount(*loaded.document);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * elements));
}

void BM_Save(benchmark::State& state) {
    LoadResult loaded = loadFile(options().input);
    if (!loaded.document) return state.SkipWithError(loaded.error.c_str());
    const std::string target = scratchFolder() + "/saved.xml";
    for (auto _ : state) {
        SaveResult saved = saveDocument(*loaded.document, target);
        if (!saved.ok) return state.SkipWithError(saved.error.c_str());
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * elementCount(*loaded.document)));
}

void BM_Walk(benchmark::State& state) {
    OpenHost open;
    if (!open.doc) return state.SkipWithError("the host could not open the input");
    std::size_t elements = 0;
    for (auto _ : state) {
        elements = walk(open.host, open.doc, [](Handle e) { benchmark::DoNotOptimize(e); });
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * elements));
}

void BM_WalkWithAttributes(benchmark::State& state) {
    OpenHost open;
    if (!open.doc) return state.SkipWithError("the host could not open the input");
    const std::size_t elements = walk(open.host, open.doc, [](Handle) {});
    for (auto _ : state) benchmark::DoNotOptimize(readAttributes(open.host, open.doc));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * elements));
}

void BM_SetTextProperty(benchmark::State& state) {
    OpenHost open;
    if (!open.doc) return state.SkipWithError("the host could not open the input");
    std::size_t elements = 0;
    int pass = 0;
    for (auto _ : state) elements = colourEveryElement(open.host, open.doc, pass++);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * elements));
}

BENCHMARK(BM_Load)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Save)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Walk)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WalkWithAttributes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SetTextProperty)->Unit(benchmark::kMillisecond);

// --- One-shot runs ---------------------------------------------------------------

using OneShot = std::function<bool(std::size_t& elements)>;

bool oneShotLoad(std::size_t& elements) {
    LoadResult loaded = loadFile(options().input);
    if (loaded.document) elements = elementCount(*loaded.document);
    return static_cast<bool>(loaded.document);
}

bool oneShotLoadSave(std::size_t& elements) {
    LoadResult loaded = loadFile(options().input);
    if (!loaded.document) return false;
    elements = elementCount(*loaded.document);
    const std::string target = options().output.empty() ? scratchFolder() + "/saved.xml" : options().output;
    return saveDocument(*loaded.document, target).ok;
}

bool oneShotWalk(std::size_t& elements) {
    OpenHost open;
    elements = open.doc ? walk(open.host, open.doc, [](Handle) {}) : 0;
    return open.doc != kNoObject;
}

bool oneShotWalkAttributes(std::size_t& elements) {
    OpenHost open;
    if (!open.doc) return false;
    elements = walk(open.host, open.doc, [](Handle) {});
    benchmark::DoNotOptimize(readAttributes(open.host, open.doc));
    return true;
}

bool oneShotSetProperty(std::size_t& elements) {
    OpenHost open;
    if (!open.doc) return false;
    elements = colourEveryElement(open.host, open.doc, 0);
    return true;
}

const std::map<std::string, OneShot>& oneShots() {
    static const std::map<std::string, OneShot> table = {
        {"load", oneShotLoad},         {"load+save", oneShotLoadSave},
        {"walk", oneShotWalk},         {"walk+attributes", oneShotWalkAttributes},
        {"set-property", oneShotSetProperty},
    };
    return table;
}

int runOneShot() {
    auto found = oneShots().find(options().oneshot);
    if (found == oneShots().end()) {
        std::fprintf(stderr, "unknown operation %s\n", options().oneshot.c_str());
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    std::size_t elements = 0;
    if (!found->second(elements)) {
        std::fprintf(stderr, "%s failed on %s\n", options().oneshot.c_str(), options().input.c_str());
        return 1;
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%.3f %zu\n", seconds, elements);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&](const char* prefix) { return arg.substr(std::strlen(prefix)); };
        if (arg.rfind("--input=", 0) == 0) options().input = value("--input=");
        else if (arg.rfind("--output=", 0) == 0) options().output = value("--output=");
        else if (arg.rfind("--oneshot=", 0) == 0) options().oneshot = value("--oneshot=");
        else argv[kept++] = argv[i];
    }
    argc = kept;
    if (options().input.empty()) {
        std::fprintf(stderr, "usage: %s --input=FILE [--oneshot=OPERATION [--output=FILE]] [benchmark flags]\n", argv[0]);
        return 2;
    }
    if (!options().oneshot.empty()) return runOneShot();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::error_code ignored;
    std::filesystem::remove_all(scratchFolder(), ignored);
    return 0;
}
