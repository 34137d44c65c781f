#include "host/headless/persist/MapBook.h"

#include "host/headless/persist/FileReferences.h"

#include <libxml/tree.h>
#include <libxml/valid.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <unordered_set>

namespace voka::headless {

namespace {

// Elements that are topic references when a map has no DTD to give them
// their `class` (DITA's map, bookmap and map-group elements), sorted.
constexpr std::array<std::string_view, 32> kTopicrefNames = {
    "abbrevlist", "amendments",  "anchorref", "appendices",   "appendix",  "backmatter", "bibliolist", "bookabstract",
    "booklist",   "booklists",   "chapter",   "colophon",     "dedication", "draftintro", "figurelist", "frontmatter",
    "glossarylist", "glossref",  "indexlist", "keydef",       "mapref",    "notices",    "part",       "preface",
    "tablelist",  "toc",         "topicgroup", "topichead",   "topicref",  "topicset",   "topicsetref", "trademarklist"};
static_assert(std::is_sorted(kTopicrefNames.begin(), kTopicrefNames.end()));

bool isTopicrefName(std::string_view name) {
    return std::binary_search(kTopicrefNames.begin(), kTopicrefNames.end(), name);
}

bool contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

std::string lowered(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return out;
}

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// The value the file gives, else the default the DTD declares; "" for neither.
std::string attributeOf(ParseContext& context, const StartTag& tag, const char* name) {
    std::string_view value;
    if (tag.find(name, value)) return std::string(value);
    xmlDocPtr doc = context.parser() ? context.parser()->myDoc : nullptr;
    if (!doc) return {};
    const std::string element = tag.qualifiedName();
    for (xmlDtdPtr dtd : {doc->intSubset, doc->extSubset}) {
        if (!dtd) continue;
        xmlAttributePtr declared = xmlGetDtdAttrDesc(dtd, reinterpret_cast<const xmlChar*>(element.c_str()),
                                                     reinterpret_cast<const xmlChar*>(name));
        if (declared && declared->defaultValue) return reinterpret_cast<const char*>(declared->defaultValue);
    }
    return {};
}

// One map may list each topic a few times over, not without end.
constexpr std::size_t kMaxMapReferences = 4 * kMaxGatheredComponents;

// What a map element passes on to the references inside it: scope and
// processing-role cascade, and nothing inside a relationship table is read.
struct Level {
    std::string scope;
    std::string role;
    bool inRelationships = false;
};

class MapReader final : public ParseHandler {
public:
    MapReader(std::vector<MapReference>& references, const std::string& mapPath)
        : references_(references), mapPath_(std::filesystem::absolute(mapPath).lexically_normal().string()) {}

    void startElement(ParseContext& context, const StartTag& tag) override {
        if (levels_.empty() && !checkedRoot_) {
            checkedRoot_ = true;
            if (!isDitaMapRoot(context, tag)) {
                context.fail("<" + tag.qualifiedName() + "> is not the root of a DITA map");
                return;
            }
        }
        Level level = levels_.empty() ? Level{} : levels_.back();
        const std::string name = tag.qualifiedName();
        const std::string cls = attributeOf(context, tag, "class");
        if (cls.empty() ? name == "reltable" : contains(cls, " map/reltable ")) level.inRelationships = true;
        const bool topicref = cls.empty() ? tag.prefix == nullptr && isTopicrefName(name) : contains(cls, " map/topicref ");
        if (std::string scope = attributeOf(context, tag, "scope"); !scope.empty()) level.scope = lowered(scope);
        std::string role = attributeOf(context, tag, "processing-role");
        if (role.empty() && name == "keydef") role = "resource-only";  // keydef's default in DITA's DTDs
        if (!role.empty()) level.role = lowered(role);
        levels_.push_back(level);
        if (topicref && !level.inRelationships) addReference(context, tag, name, level);
    }

    void endElement(ParseContext&) override {
        if (!levels_.empty()) levels_.pop_back();
    }
    void characters(ParseContext&, std::string_view) override {}

private:
    void addReference(ParseContext& context, const StartTag& tag, const std::string& name, const Level& level) {
        if (level.scope == "external" || level.scope == "peer" || level.role == "resource-only") return;
        const std::string href = attributeOf(context, tag, "href");
        std::string path;
        if (resolveReference(href, mapPath_, path) != Reference::File) return;
        std::string format = lowered(attributeOf(context, tag, "format"));
        if (format.empty() && name == "mapref") format = "ditamap";
        if (format.empty()) {
            // No format said: the file's extension tells, as DITA processors infer it.
            const std::string file = lowered(std::filesystem::path(path).filename().string());
            const std::string extension = std::filesystem::path(file).extension().string();
            if (extension == ".ditamap") format = "ditamap";
            else if (extension == ".dita" || extension == ".xml" || extension.empty()) format = "dita";
        }
        if (format != "dita" && format != "ditamap") return;
        if (references_.size() >= kMaxMapReferences) {
            if (!cut_) context.warn("references after the first " + std::to_string(kMaxMapReferences) + " are left out");
            cut_ = true;
            return;
        }
        references_.push_back(MapReference{std::move(path), format == "ditamap", context.line()});
    }

    std::vector<MapReference>& references_;
    std::string mapPath_;
    std::vector<Level> levels_;
    bool checkedRoot_ = false;
    bool cut_ = false;
};

// Maps are told apart by the file they are, links resolved, so that a
// cycle through a symbolic link is still a cycle.
std::string identityOf(const std::string& path) {
    std::error_code ec;
    std::filesystem::path real = std::filesystem::weakly_canonical(path, ec);
    return ec ? path : real.string();
}

// Warnings are many only in a hostile or broken set of maps; a few say it.
constexpr std::size_t kMaxMapWarnings = 50;

class Warnings {
public:
    explicit Warnings(std::vector<std::string>& list) : list_(list) {}
    ~Warnings() {
        if (dropped_ > 0) list_.push_back(std::to_string(dropped_) + " more problems with referenced maps are not listed");
    }
    void add(std::string message) {
        if (said_ < kMaxMapWarnings) {
            list_.push_back(std::move(message));
            ++said_;
        } else {
            ++dropped_;
        }
    }
    Warnings(const Warnings&) = delete;
    Warnings& operator=(const Warnings&) = delete;

private:
    std::vector<std::string>& list_;
    std::size_t said_ = 0;
    std::size_t dropped_ = 0;
};

struct Frame {
    std::string path;      // the map, as referenced
    std::string identity;  // the map's file, links resolved
    std::vector<MapReference> references;
    std::size_t next = 0;
};

}  // namespace

bool isDitaMapRoot(ParseContext& context, const StartTag& root) {
    if (root.prefix == nullptr) {
        const std::string_view name = reinterpret_cast<const char*>(root.local);
        if (name == "map" || name == "bookmap") return true;
    }
    if (contains(attributeOf(context, root, "class"), " map/map ")) return true;
    return endsWith(lowered(context.path()), ".ditamap");
}

std::unique_ptr<ParseHandler> makeMapReader(std::vector<MapReference>& references, const std::string& mapPath) {
    return std::make_unique<MapReader>(references, mapPath);
}

void gatherMapBook(Book& book, const std::string& mapPath, std::vector<MapReference> references,
                   std::vector<std::string>& warnings) {
    book.source = BookSource::DitaMap;
    Warnings said(warnings);
    std::unordered_set<std::string> topics;
    std::unordered_set<std::string> mapsDone;  // a map read once holds nothing new the second time
    std::size_t mapsRead = 0;
    bool full = false;
    const std::string top = std::filesystem::absolute(mapPath).lexically_normal().string();
    std::vector<Frame> stack;
    stack.push_back(Frame{top, identityOf(top), std::move(references), 0});
    mapsDone.insert(stack.back().identity);
    while (!stack.empty() && !full) {
        Frame& frame = stack.back();
        if (frame.next == frame.references.size()) {
            stack.pop_back();
            continue;
        }
        MapReference reference = std::move(frame.references[frame.next++]);
        const std::string place = frame.path + ":" + std::to_string(reference.line) + ": ";
        if (!reference.map) {
            if (!topics.insert(reference.path).second) continue;
            if (book.components.size() >= kMaxGatheredComponents) {
                said.add(place + "the book is cut at " + std::to_string(kMaxGatheredComponents) +
                         " topics, the most one map may gather: \"" + reference.path + "\" and what follows are left out");
                full = true;
                continue;
            }
            BookComponent component;
            component.path = std::move(reference.path);
            component.handleId = book.nextComponentId++;
            book.components.push_back(std::move(component));
            continue;
        }
        const std::string identity = identityOf(reference.path);
        const bool cycle = std::any_of(stack.begin(), stack.end(), [&](const Frame& f) { return f.identity == identity; });
        if (cycle) {
            said.add(place + "the map \"" + reference.path +
                     "\" is left out: it is being expanded already (the maps refer to each other in a cycle)");
            continue;
        }
        if (!mapsDone.insert(identity).second) continue;
        if (stack.size() >= kMaxMapNesting || mapsRead >= kMaxMapsRead) {
            said.add(place + "the map \"" + reference.path + "\" is left out: " +
                     (stack.size() >= kMaxMapNesting ? "maps nest more than " + std::to_string(kMaxMapNesting) + " deep"
                                                     : "more than " + std::to_string(kMaxMapsRead) + " maps are referenced"));
            continue;
        }
        ++mapsRead;
        std::vector<MapReference> nested;
        std::unique_ptr<ParseHandler> reader = makeMapReader(nested, reference.path);
        ParseIssues issues = parseFile(reference.path, *reader);
        for (std::string& warning : issues.warnings) said.add(std::move(warning));
        if (!issues.error.empty()) {
            said.add(place + "the map \"" + reference.path + "\" is left out: " + issues.error);
            continue;
        }
        stack.push_back(Frame{reference.path, identity, std::move(nested), 0});
    }
}

}  // namespace voka::headless
