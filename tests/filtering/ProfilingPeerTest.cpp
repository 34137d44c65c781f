// A duplicate filtered by VOKA must keep exactly the elements DocBook XSL's
// profiling stylesheet keeps from the same DocBook 5 file: writers who move
// from one to the other expect the same output for the same conditions.
//
// The documents stay where the two agree by design: profiling attributes are
// never on a table cell, a table heading or a table body, the first row of
// each body carries none (a body never loses all its rows), no value is
// empty, and the root element is kept.
#include "filtering/FilterWalk.h"
#include "schemes/SchemeWorld.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace voka::testing {
namespace {

constexpr const char* kProfileXsl = "/usr/share/xml/docbook/stylesheet/docbook-xsl-ns/profiling/profile.xsl";
constexpr const char* kInstallHint = " (scripts/install-deps installs xsltproc and docbook-xsl-ns)";

// "Linux" beside "linux": both sides compare values in their case.
const char* const kAudiences[] = {"novice", "expert", "admin"};
const char* const kSystems[] = {"linux", "windows", "mac", "Linux"};
const char* const kArches[] = {"x86", "arm", "riscv"};

enum class Tables { Cals, CalsAndHtml };

// A DocBook 5 article drawn from a seed: nested sections of titles, paras
// with inline phrases and footnotes, lists, notes, and informal tables.
// Every element has an xml:id that names its tag.
class DocBookGenerator {
public:
    DocBookGenerator(unsigned seed, Tables tables) : rng_(seed), tables_(tables) {}

    std::string article() {
        out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
        open("article", false, " xmlns=\"http://docbook.org/ns/docbook\" version=\"5.0\"");
        leaf("title", "Profiled article");
        while (count_ < kElements) section(1);
        close("article");
        out_ += "\n";
        return out_;
    }

    const std::vector<std::string>& ids() const { return ids_; }

private:
    static constexpr int kElements = 500;  // top-level sections are added until there are as many elements

    unsigned below(unsigned n) { return static_cast<unsigned>(rng_() % n); }
    bool oneIn(unsigned n) { return below(n) == 0; }

    // One in eight of the elements that may carry profiling attributes do.
    void open(const char* tag, bool mayProfile = true, const std::string& extra = "") {
        const std::string id = std::string(tag) + "-" + std::to_string(++count_);
        ids_.push_back(id);
        out_ += "<" + std::string(tag) + extra + " xml:id=\"" + id + "\"";
        if (mayProfile && oneIn(8)) {
            const unsigned which = 1 + below(7);  // a non-empty subset of the three attributes
            if (which & 1) attribute("audience", kAudiences[below(std::size(kAudiences))]);
            if (which & 2) attribute("os", kSystems[below(std::size(kSystems))]);
            if (which & 4) attribute("arch", kArches[below(std::size(kArches))]);
        }
        out_ += ">";
    }
    void attribute(const char* name, const char* value) { out_ += " " + std::string(name) + "=\"" + value + "\""; }
    void close(const char* tag) { out_ += "</" + std::string(tag) + ">\n"; }
    void leaf(const char* tag, const std::string& text, bool mayProfile = true) {
        open(tag, mayProfile);
        out_ += text;
        out_ += "</" + std::string(tag) + ">";
    }

    std::string words() {
        static const char* const kWords[] = {"sensor", "pairs", "with", "the", "hub", "when", "held", "down"};
        std::string text;
        for (unsigned i = 0, n = 2 + below(5); i < n; ++i) text += std::string(i ? " " : "") + kWords[below(8)];
        return text;
    }

    void section(int depth) {
        open("section");
        leaf("title", words());
        for (unsigned i = 0, n = 2 + below(3); i < n; ++i) block();
        if (depth < 3)
            for (unsigned i = 0, n = below(3); i < n; ++i) section(depth + 1);
        close("section");
    }

    void block() {
        switch (below(6)) {
            case 0:
            case 1: para(true); break;
            case 2: list(); break;
            case 3: note(); break;
            default: tables_ == Tables::CalsAndHtml && oneIn(2) ? htmlTable() : calsTable();
        }
    }

    void para(bool footnote) {
        open("para");
        out_ += words();
        for (unsigned i = 0, n = below(3); i < n; ++i) {
            out_ += " ";
            leaf(oneIn(2) ? "phrase" : "emphasis", words());
            out_ += " " + words();
        }
        if (footnote && oneIn(3)) {
            open("footnote");
            for (unsigned i = 0, n = 1 + below(2); i < n; ++i) para(false);
            out_ += "</footnote>";
        }
        close("para");
    }

    void list(bool nested = false) {
        open("itemizedlist");
        for (unsigned i = 0, n = 2 + below(4); i < n; ++i) {
            open("listitem");
            para(true);
            if (!nested && oneIn(4)) list(true);
            close("listitem");
        }
        close("itemizedlist");
    }

    void note() {
        open("note");
        if (oneIn(2)) leaf("title", words());
        for (unsigned i = 0, n = 1 + below(3); i < n; ++i) oneIn(3) ? list() : para(true);
        close("note");
    }

    void calsTable() {
        const unsigned columns = 1 + below(3);
        open("informaltable");
        open("tgroup", true, " cols=\"" + std::to_string(columns) + "\"");
        if (oneIn(2)) {
            open("thead", false);
            row("row", "entry", columns, false);
            close("thead");
        }
        open("tbody", false);
        for (unsigned r = 0, n = 1 + below(5); r < n; ++r) row("row", "entry", columns, r > 0);
        close("tbody");
        close("tgroup");
        close("informaltable");
    }

    void htmlTable() {
        const unsigned columns = 1 + below(3);
        open("informaltable");
        if (oneIn(2)) {
            open("thead", false);
            row("tr", "th", columns, false);
            close("thead");
        }
        open("tbody", false);
        for (unsigned r = 0, n = 1 + below(5); r < n; ++r) row("tr", "td", columns, r > 0);
        close("tbody");
        close("informaltable");
    }

    void row(const char* rowTag, const char* cellTag, unsigned columns, bool mayProfile) {
        open(rowTag, mayProfile);
        for (unsigned c = 0; c < columns; ++c) {
            if (oneIn(3)) {
                open(cellTag, false);
                para(false);
                out_ += "</" + std::string(cellTag) + ">";
            } else {
                leaf(cellTag, words(), false);
            }
        }
        close(rowTag);
    }

    std::mt19937 rng_;
    Tables tables_;
    std::string out_;
    int count_ = 0;
    std::vector<std::string> ids_;
};

std::string fileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Runs a program, each argument quoted for the shell, with its output and
// errors into `log`; the exit code, or -1 when it did not exit.
int runProgram(const std::vector<std::string>& argv, const std::filesystem::path& log) {
    std::string line;
    for (const std::string& argument : argv) line += "'" + argument + "' ";
    const int status = std::system((line + "</dev/null >'" + log.string() + "' 2>&1").c_str());
    return status != -1 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The xml:ids of every element of a file, read with libxml2.
std::set<std::string> idsInFile(const std::filesystem::path& path, std::string& failure) {
    std::set<std::string> ids;
    xmlDocPtr doc = xmlReadFile(path.c_str(), nullptr, XML_PARSE_NONET);
    if (!doc) {
        failure = "libxml2 cannot read " + path.string();
        return ids;
    }
    std::vector<xmlNodePtr> work{xmlDocGetRootElement(doc)};
    while (!work.empty()) {
        xmlNodePtr node = work.back();
        work.pop_back();
        for (; node; node = node->next) {
            if (node->type != XML_ELEMENT_NODE) continue;
            if (xmlChar* id = xmlGetNsProp(node, BAD_CAST "id", XML_XML_NAMESPACE)) {
                ids.insert(reinterpret_cast<const char*>(id));
                xmlFree(id);
            }
            if (node->children) work.push_back(node->children);
        }
    }
    xmlFreeDoc(doc);
    return ids;
}

// The xml:ids of the elements the host holds under the main flow's top element.
std::set<std::string> idsInHost(Host& host, Handle doc) {
    const std::vector<std::string> ids = idsInOrder(host, doc, "xml:id");
    return std::set<std::string>(ids.begin(), ids.end());
}

std::string idOf(Host& host, Handle doc, Handle element) {
    for (const Attribute& attribute : host.attributes(doc, element))
        if (attribute.name == "xml:id" && !attribute.values.empty()) return attribute.values.front();
    return "(none)";
}

std::string joined(const std::vector<std::string>& values, const char* separator) {
    std::string text;
    for (const std::string& value : values) text += (text.empty() ? "" : separator) + value;
    return text;
}

// The count and the first few, in id order.
std::string listed(const std::set<std::string>& ids) {
    std::string text = " " + std::to_string(ids.size());
    int shown = 0;
    for (const std::string& id : ids) {
        if (++shown > 30) return text + " ...";
        text += " " + id;
    }
    return text;
}

struct PeerCase {
    unsigned seed;
    Tables tables;
    // Wanted values per attribute; none: that attribute does not filter.
    std::vector<std::string> audience, os, arch;
};

TEST(ProfilingPeer, ADuplicateKeepsWhatDocBookProfilingKeeps) {
    const PeerCase cases[] = {
        {1, Tables::Cals, {"novice", "expert"}, {"linux"}, {}},
        {2, Tables::Cals, {"novice", "expert"}, {"linux"}, {"x86", "arm"}},
        {3, Tables::Cals, {"admin"}, {}, {"riscv"}},
        {4, Tables::Cals, {"expert"}, {"linux", "mac", "windows"}, {"x86"}},
        {5, Tables::Cals, {}, {"mac"}, {}},
        {6, Tables::CalsAndHtml, {"novice", "expert"}, {"linux"}, {}},
        {7, Tables::CalsAndHtml, {"expert"}, {"linux", "mac"}, {"arm"}},
    };
    ASSERT_TRUE(std::filesystem::exists(kProfileXsl)) << kProfileXsl << " is missing" << kInstallHint;
    for (const PeerCase& c : cases) {
        SCOPED_TRACE("seed " + std::to_string(c.seed) +
                     (c.tables == Tables::Cals ? ", CALS tables" : ", CALS and HTML tables"));
        DocBookGenerator generator(c.seed, c.tables);
        const std::string text = generator.article();
        const std::set<std::string> all(generator.ids().begin(), generator.ids().end());
        ASSERT_EQ(all.size(), generator.ids().size()) << "ids are unique";

        World world;
        const std::filesystem::path in = world.folder / "profiled.xml", out = world.folder / "peer.xml";
        std::ofstream(in, std::ios::binary) << text;
        const std::string before = fileBytes(in);
        ASSERT_EQ(before, text) << "written whole";

        const std::pair<std::string, const std::vector<std::string>*> conditions[] = {
            {"audience", &c.audience}, {"os", &c.os}, {"arch", &c.arch}};
        std::vector<std::string> argv{"xsltproc", "--nonet"};
        for (const auto& [attribute, values] : conditions)
            if (!values->empty()) argv.insert(argv.end(), {"--stringparam", "profile." + attribute, joined(*values, ";")});
        argv.insert(argv.end(), {"-o", out.string(), kProfileXsl, in.string()});
        const int exit = runProgram(argv, world.folder / "xsltproc.log");
        ASSERT_EQ(exit, 0) << kInstallHint << "\n" << fileBytes(world.folder / "xsltproc.log");
        std::string failure;
        const std::set<std::string> peerKept = idsInFile(out, failure);
        ASSERT_TRUE(failure.empty()) << failure;

        const Handle doc = world.host.open(world.hostPath("profiled.xml"), OpenParams{});
        ASSERT_NE(doc, kNoObject);
        ASSERT_EQ(idsInHost(world.host, doc), all) << "the host loads every element with its xml:id";
        // An element without the attribute has it with no value, as its tag was seen with it.
        for (const auto& [attribute, values] : conditions) {
            if (values->empty()) continue;
            std::vector<std::string> wanted{"<no value>"};
            wanted.insert(wanted.end(), values->begin(), values->end());
            world.state.filter.rules.push_back({attribute, wanted});
        }
        world.state.prefs.filterType = kFilterDuplicateFile;
        FilterSubtree(world.host, world.state, doc, world.host.highestLevelElement(doc, world.host.mainFlow(doc)), 3, 0);
        // A refused deletion stops the walk with the element selected.
        EXPECT_EQ(world.state.cancel, 0) << "stopped at " << idOf(world.host, doc, world.host.elementSelection(doc).begin.child);
        EXPECT_EQ(world.state.settingsError, 0) << "no table cell was asked to go";
        EXPECT_EQ(world.shown(), std::vector<std::string>{});
        const std::set<std::string> vokaKept = idsInHost(world.host, doc);
        world.host.close(doc, kCloseModified);

        std::set<std::string> onlyVoka, onlyPeer;
        for (const std::string& id : vokaKept)
            if (!peerKept.count(id)) onlyVoka.insert(id);
        for (const std::string& id : peerKept)
            if (!vokaKept.count(id)) onlyPeer.insert(id);
        EXPECT_TRUE(onlyVoka.empty() && onlyPeer.empty())
            << "kept by VOKA alone:" << listed(onlyVoka) << "\nkept by profile.xsl alone:" << listed(onlyPeer);

        const std::size_t removed = all.size() - peerKept.size();
        std::cout << "seed " << c.seed << ": " << all.size() << " elements, " << removed << " removed by profile.xsl, "
                  << all.size() - vokaKept.size() << " by VOKA\n";
        EXPECT_GE(removed * 10, all.size()) << "at least a tenth of the elements go";
        EXPECT_LE(removed * 4, all.size() * 3) << "at least a quarter stays";
        EXPECT_EQ(fileBytes(in), before) << "the source file is left as it was";
    }
}

}  // namespace
}  // namespace voka::testing
