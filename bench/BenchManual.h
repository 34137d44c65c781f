// The generated manual the in-memory benchmarks work on: about a million
// elements, sections of paragraphs whose attribute values vary as authors'
// do (some empty, some of two words when `twoWords`).
#pragma once

#include "host/headless/HeadlessHost.h"
#include "host/headless/ScriptedAgent.h"
#include "host/headless/TreeBuilder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace voka::bench {

using namespace voka::headless;

constexpr int kSections = 1000;
constexpr int kParagraphsPerSection = 999;  // with the sections and the root: 1,001,000 elements

// Values as authors write them: most paragraphs carry their own, some leave
// them empty (their section's values apply), and with blank-separated
// values some list two words.
inline std::vector<AttrValue> paragraphAttributes(int i, bool twoWords) {
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
        : folder(std::filesystem::temp_directory_path() / "voka-bench"), host(HostConfig{folder.string()}, agent) {
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

}  // namespace voka::bench
