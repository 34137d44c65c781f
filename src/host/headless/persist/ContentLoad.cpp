#include "host/headless/persist/ContentLoad.h"

#include "host/headless/persist/ContentExtras.h"

#include <libxml/tree.h>
#include <libxml/valid.h>

#include <array>
#include <limits>
#include <unordered_map>

namespace voka::headless {

namespace {

const char* str(const xmlChar* s) { return reinterpret_cast<const char*>(s); }

std::string qualified(const xmlChar* prefix, const xmlChar* name) {
    if (!prefix) return str(name);
    return std::string(str(prefix)) + ":" + str(name);
}

// The attributes DocBook's profiling reads, whose values list several
// values separated by ';'.
constexpr std::string_view kDocBookProfilingAttributes[] = {
    "arch", "audience", "condition", "conformance", "lang", "xml:lang", "os", "outputformat", "revision",
    "revisionflag", "role", "security", "status", "userlevel", "vendor", "wordsize"};

bool isDocBook(const StartTag& root, const std::string& prolog) {
    for (int i = 0; i < root.namespaceCount; ++i)
        if (root.namespaces[2 * i] == nullptr && root.namespaceUri(i) == "http://docbook.org/ns/docbook") return true;
    const std::size_t doctype = prolog.find("<!DOCTYPE");
    return doctype != std::string::npos && prolog.find("DocBook", doctype) != std::string::npos;
}

// The declaration's content as a postfix program, built without recursion:
// a hostile DTD may chain thousands of names in one group.
ContentModel contentModelOf(xmlElementPtr element) {
    ContentModel model;
    switch (element->etype) {
    case XML_ELEMENT_TYPE_EMPTY:
        model.kind = ContentModel::Kind::Empty;
        return model;
    case XML_ELEMENT_TYPE_ANY:
        model.kind = ContentModel::Kind::Any;
        return model;
    case XML_ELEMENT_TYPE_MIXED:
    case XML_ELEMENT_TYPE_ELEMENT:
        model.kind = ContentModel::Kind::Children;
        break;
    default:
        return model;
    }
    std::unordered_map<std::string, std::int32_t> names;
    auto occurrence = [&](xmlElementContentPtr c) {
        if (c->ocur == XML_ELEMENT_CONTENT_OPT) model.program.push_back(ContentModel::kOptional);
        else if (c->ocur == XML_ELEMENT_CONTENT_MULT) model.program.push_back(ContentModel::kRepeat);
        else if (c->ocur == XML_ELEMENT_CONTENT_PLUS) model.program.push_back(ContentModel::kOneOrMore);
    };
    std::vector<std::pair<xmlElementContentPtr, bool>> stack{{element->content, false}};
    while (!stack.empty()) {
        auto [c, childrenDone] = stack.back();
        stack.pop_back();
        if (!c || c->type == XML_ELEMENT_CONTENT_PCDATA) {
            model.program.push_back(ContentModel::kNothing);
            if (c) occurrence(c);
            continue;
        }
        if (c->type == XML_ELEMENT_CONTENT_ELEMENT) {
            const std::string name = qualified(c->prefix, c->name);
            auto [slot, added] = names.try_emplace(name, static_cast<std::int32_t>(model.names.size()));
            if (added) model.names.push_back(name);
            model.program.push_back(slot->second);
            occurrence(c);
            continue;
        }
        if (childrenDone) {
            model.program.push_back(c->type == XML_ELEMENT_CONTENT_SEQ ? ContentModel::kSequence : ContentModel::kChoice);
            occurrence(c);
            continue;
        }
        stack.push_back({c, true});
        stack.push_back({c->c2, false});
        stack.push_back({c->c1, false});
    }
    return model;
}


// Parser names are interned, so a pair of pointers is a name's identity.
struct NameKey {
    const void* owner;  // a definition index or a marker, widened
    const void* prefix;
    const void* local;
    bool operator==(const NameKey&) const = default;
};

struct NameKeyHash {
    std::size_t operator()(const NameKey& k) const {
        auto h = std::hash<const void*>{};
        return h(k.owner) * 31 + h(k.prefix) * 17 + h(k.local);
    }
};

// Names seen so far, with the few met last answered from a small array
// before the map: a document repeats a handful of tags and attributes.
template <class Value>
class NameTable {
public:
    const Value* find(const NameKey& key) {
        Recent& recent = recent_[NameKeyHash()(key) % recent_.size()];
        if (recent.used && recent.key == key) return &recent.value;
        auto found = all_.find(key);
        if (found == all_.end()) return nullptr;
        recent = Recent{key, found->second, true};
        return &recent.value;
    }
    void add(const NameKey& key, Value value) { all_.emplace(key, value); }

private:
    struct Recent {
        NameKey key{};
        Value value{};
        bool used = false;
    };
    std::array<Recent, 61> recent_{};
    std::unordered_map<NameKey, Value, NameKeyHash> all_;
};

const void* widen(Index index) { return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(index) + 1); }

// Kinds of DTD attribute types: the model keeps one string per value, so
// only what a definition can use differently is told apart.
int kindOfDeclared(xmlAttributeType type) {
    switch (type) {
        case XML_ATTRIBUTE_ID: return kAttrUniqueId;
        case XML_ATTRIBUTE_IDREF: return kAttrIdRef;
        case XML_ATTRIBUTE_IDREFS: return kAttrIdRefs;
        case XML_ATTRIBUTE_ENUMERATION:
        case XML_ATTRIBUTE_NOTATION: return kAttrChoices;
        case XML_ATTRIBUTE_CDATA:
        case XML_ATTRIBUTE_ENTITY:
        case XML_ATTRIBUTE_ENTITIES:
        case XML_ATTRIBUTE_NMTOKEN:
        case XML_ATTRIBUTE_NMTOKENS: return kAttrString;
    }
    return kAttrString;
}

constexpr std::uint8_t kTitleInTable = 1;
constexpr std::uint8_t kTitleElsewhere = 2;

class ContentLoader final : public ParseHandler {
public:
    ContentLoader(Document& doc, const ElementKindTable& kinds) : doc_(doc), kinds_(kinds) {
        Flow flow;
        flow.name = "A";
        flow.main = true;
        doc_.flows.push_back(std::move(flow));
        doc_.contentForm = true;
        doc_.ensureStandardCatalogue();
    }

    void startElement(ParseContext& context, const StartTag& tag) override {
        if (!rootSeen_) {
            rootSeen_ = true;
            keepProlog(context, tag);
            if (isDocBook(tag, doc_.contentProlog))
                for (const std::string_view name : kDocBookProfilingAttributes) doc_.valueSeparators.emplace(name, ';');
            readDtd(context);
            reserveFor(context.fileBytes());
        }
        const Index definition = definitionOf(tag);
        const Index parent = open_.empty() ? kNil : open_.back();
        noteTitleUse(definition, parent);
        const Index index = doc_.appendElement(definition, parent, 0);
        // A converted encoding counts bytes of the conversion, not of the file.
        const std::size_t tagEnd = context.converted() ? 0 : context.consumed();
        doc_.sourceTagEnds.push_back(tagEnd <= std::numeric_limits<std::uint32_t>::max() ? static_cast<std::uint32_t>(tagEnd) : 0);
        const auto slotsBegin = doc_.attributeSlots.size();
        for (int i = 0; i < tag.namespaceCount; ++i) {
            const std::uint32_t position = positionOf(definition, &kNamespaceOwner, tag.namespaces[2 * i], [&] {
                return tag.namespaceName(i);
            });
            // libxml2 does not tell a namespace declaration the DTD defaults
            // (as DITA's xmlns:ditaarch) from one the file has; one equal to
            // the declared default is left to the DTD, like other defaults.
            const auto& defaults = doc_.definitions[definition].attributes[position].defaults;
            if (!defaults.empty() && defaults.front() == tag.namespaceUri(i)) continue;
            doc_.attributeSlots.push_back(AttributeSlot{position, doc_.values.internSingle(tag.namespaceUri(i))});
        }
        for (int i = 0; i < tag.attributeCount; ++i) {
            const xmlChar* const* a = tag.attributes + 5 * i;
            const std::uint32_t position = positionOf(definition, a[1], a[0], [&] { return tag.attributeName(i); });
            doc_.attributeSlots.push_back(AttributeSlot{position, valuesOf(definition, position, tag.attributeValue(i))});
        }
        const auto count = doc_.attributeSlots.size() - slotsBegin;
        if (count > std::numeric_limits<std::uint16_t>::max()) {
            context.fail("too many attributes on one element");
            return;
        }
        Element& element = doc_.elements[index];
        element.attributesBegin = static_cast<std::uint32_t>(slotsBegin);
        element.attributesCount = static_cast<std::uint16_t>(count);
        element.begin = element.end = textSize();
        open_.push_back(index);
    }

    void endElement(ParseContext&) override {
        if (open_.empty()) return;
        doc_.elements[open_.back()].end = textSize();
        open_.pop_back();
        if (open_.empty()) rootClosed_ = true;
    }

    void characters(ParseContext& context, std::string_view text) override {
        std::string& flowText = doc_.flows[0].text;
        if (flowText.size() + text.size() > std::numeric_limits<std::uint32_t>::max()) {
            context.fail("the document's text is longer than 4 GB");
            return;
        }
        flowText.append(text);
    }

    void comment(ParseContext&, std::string_view text) override {
        keepMarkup("<!--" + std::string(text) + "-->");
    }

    void instruction(ParseContext& context, std::string_view target, std::string_view data) override {
        if (isContentExtra(target)) {
            extras_.push_back(Extra{std::string(target), std::string(data), context.line(), context.column()});
            return;
        }
        std::string markup("<?");
        markup += target;
        if (!data.empty()) {
            markup += ' ';
            markup += data;
        }
        keepMarkup(markup + "?>");
    }

    void finish(ParseContext& context) override {
        ContentExtrasReader reader(doc_);
        for (const Extra& extra : extras_) {
            std::string problem;
            if (reader.apply(extra.target, extra.data, problem)) continue;
            context.issues().warnings.push_back(context.path() + ":" + std::to_string(extra.line) + ":" +
                                                std::to_string(extra.column) + ": ignored <?" + extra.target +
                                                "?>: " + problem);
        }
        settleTitleKinds();
    }

private:
    struct Extra {
        std::string target;
        std::string data;
        int line;
        int column;
    };

    static inline const char kNamespaceOwner = 0;

    std::uint32_t textSize() const { return static_cast<std::uint32_t>(doc_.flows[0].text.size()); }

    int kindOf(std::string_view tag) const {
        auto found = kinds_.find(tag);
        return found == kinds_.end() ? kElementContainer : found->second;
    }

    Index definitionFor(const std::string& tag) { return doc_.definitionFor(tag, kindOf(tag)); }

    // Room for what a file of this size usually holds, so that a large one
    // is not copied over and over as the arrays grow; pages not used are
    // never touched.
    // One value, or for an attribute its vocabulary separates otherwise, the pieces between separators.
    std::uint32_t valuesOf(Index definition, std::uint32_t position, std::string_view value) {
        if (doc_.valueSeparators.empty()) return doc_.values.internSingle(value);
        const auto found = doc_.valueSeparators.find(doc_.definitions[definition].attributes[position].name);
        if (found == doc_.valueSeparators.end() || found->second == '\0' ||
            value.find(found->second) == std::string_view::npos)
            return doc_.values.internSingle(value);
        std::vector<std::string> pieces;
        for (std::size_t from = 0; from <= value.size();) {
            const std::size_t to = std::min(value.find(found->second, from), value.size());
            if (to > from) pieces.emplace_back(value.substr(from, to - from));
            from = to + 1;
        }
        // Separators alone are no list: kept as written.
        return pieces.empty() ? doc_.values.internSingle(value) : doc_.values.intern(pieces);
    }

    void reserveFor(std::size_t bytes) {
        const std::size_t elements = std::min<std::size_t>(bytes / 32, kMaxReservedElements) + 64;
        doc_.elements.reserve(elements);
        doc_.attributeSlots.reserve(elements);
        doc_.sourceTagEnds.reserve(elements);
        doc_.flows[0].text.reserve(std::min<std::size_t>(bytes, kMaxReservedElements * 32) / 2);
    }
    static constexpr std::size_t kMaxReservedElements = std::size_t{1} << 24;

    Index definitionOf(const StartTag& tag) {
        NameKey key{nullptr, tag.prefix, tag.local};
        if (const Index* found = definitions_.find(key)) return *found;
        Index index = definitionFor(tag.qualifiedName());
        definitions_.add(key, index);
        return index;
    }

    template <class Name>
    std::uint32_t positionOf(Index definition, const void* prefix, const void* local, Name name) {
        NameKey key{widen(definition), prefix, local};
        if (const std::uint32_t* found = positions_.find(key)) return *found;
        std::uint32_t position = doc_.attributePosition(definition, name());
        positions_.add(key, position);
        return position;
    }

    // The prolog is kept byte for byte, so the DOCTYPE and its internal
    // subset come back as they were written. Input in another encoding is
    // saved as UTF-8: its prolog converted, and declared so.
    void keepProlog(ParseContext& context, const StartTag& root) {
        std::string bytes;
        const bool converted = context.converted();
        if (converted ? context.readPrefixAsUtf8(context.consumed(), bytes) : context.readPrefix(context.consumed(), bytes)) {
            auto tagStart = bytes.rfind('<');
            // A stateful encoding can leave the count of bytes read uncertain:
            // the prolog is taken only when it ends where the root begins.
            const std::string name = root.qualifiedName();
            if (tagStart != std::string::npos && (!converted || bytes.compare(tagStart + 1, name.size(), name) == 0)) {
                doc_.contentProlog = bytes.substr(0, tagStart);
                if (converted) declareUtf8(doc_.contentProlog);
                return;
            }
        }
        // A prolog that cannot be had as written is rebuilt from the DTD libxml2 read.
        doc_.contentProlog = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
        xmlDocPtr dtdDoc = context.parser()->myDoc;
        if (!dtdDoc || !dtdDoc->intSubset) return;
        xmlBufferPtr buffer = xmlBufferCreate();
        if (!buffer) return;
        xmlNodeDump(buffer, dtdDoc, reinterpret_cast<xmlNodePtr>(dtdDoc->intSubset), 0, 0);
        doc_.contentProlog.append(str(xmlBufferContent(buffer)), static_cast<std::size_t>(xmlBufferLength(buffer)));
        doc_.contentProlog += "\n";
        xmlBufferFree(buffer);
    }

    // The converted prolog loses its byte order mark and names UTF-8 in its
    // declaration, which the saved file is in.
    static void declareUtf8(std::string& prolog) {
        if (prolog.rfind("\xEF\xBB\xBF", 0) == 0) prolog.erase(0, 3);
        if (prolog.rfind("<?xml", 0) != 0) return;
        const auto declarationEnd = prolog.find("?>");
        const auto name = prolog.find("encoding", 0);
        if (name == std::string::npos || name > declarationEnd) return;
        const auto open = prolog.find_first_of("\"'", name);
        if (open == std::string::npos || open > declarationEnd) return;
        const auto close = prolog.find(prolog[open], open + 1);
        if (close == std::string::npos || close > declarationEnd) return;
        prolog.replace(open + 1, close - open - 1, "UTF-8");
    }

    // Declared elements and attributes in declaration order, the internal
    // subset first: its attribute declarations win, as in XML.
    void readDtd(ParseContext& context) {
        xmlDocPtr dtdDoc = context.parser()->myDoc;
        if (!dtdDoc) return;
        std::size_t internal = doc_.definitions.size();
        for (xmlDtdPtr dtd : {dtdDoc->intSubset, dtdDoc->extSubset}) {
            if (!dtd) continue;
            if (dtd == dtdDoc->extSubset) internal = doc_.definitions.size();
            for (xmlNodePtr node = dtd->children; node; node = node->next) {
                if (node->type == XML_ELEMENT_DECL) {
                    auto* element = reinterpret_cast<xmlElementPtr>(node);
                    const Index definition = definitionFor(qualified(element->prefix, element->name));
                    ContentModel& model = doc_.definitions[definition].content;
                    if (model.kind == ContentModel::Kind::Undeclared) model = contentModelOf(element);
                } else if (node->type == XML_ATTRIBUTE_DECL) {
                    declareAttribute(reinterpret_cast<xmlAttributePtr>(node));
                }
            }
        }
        for (std::size_t d = internal; dtdDoc->extSubset && d < doc_.definitions.size(); ++d)
            doc_.definitions[d].fromExternalDtd = true;
    }

    void declareAttribute(xmlAttributePtr declared) {
        Index definition = definitionFor(str(declared->elem));
        ElementDefinition& def = doc_.definitions[definition];
        const auto before = def.attributes.size();
        std::uint32_t position = doc_.attributePosition(definition, qualified(declared->prefix, declared->name));
        if (doc_.definitions[definition].attributes.size() == before) return;  // declared before
        AttributeDefinition& attribute = doc_.definitions[definition].attributes[position];
        attribute.kind = kindOfDeclared(declared->atype);
        for (xmlEnumerationPtr choice = declared->tree; choice; choice = choice->next)
            attribute.choices.emplace_back(str(choice->name));
        if (declared->defaultValue) attribute.defaults.emplace_back(str(declared->defaultValue));
        if (declared->def == XML_ATTRIBUTE_FIXED) attribute.flags |= 4;
    }

    // A tag the table calls a table title (`title`, `caption`) is one only
    // where it stands in tables alone; definitions are per tag, and a
    // `title` that also heads sections stays a container.
    void noteTitleUse(Index definition, Index parent) {
        if (doc_.definitions[definition].type != kElementTableTitle) return;
        if (titleUse_.size() <= definition) titleUse_.resize(definition + 1, 0);
        bool inTable = parent != kNil && doc_.definitions[doc_.elements[parent].definition].type == kElementTable;
        titleUse_[definition] |= inTable ? kTitleInTable : kTitleElsewhere;
    }

    void settleTitleKinds() {
        for (std::size_t i = 0; i < doc_.definitions.size(); ++i) {
            ElementDefinition& def = doc_.definitions[i];
            if (def.type != kElementTableTitle) continue;
            std::uint8_t use = i < titleUse_.size() ? titleUse_[i] : 0;
            if (use != kTitleInTable) def.type = kElementContainer;
        }
    }

    void keepMarkup(std::string markup) {
        if (!rootSeen_) return;  // part of the prolog, kept byte for byte
        ContentMarkup kept;
        kept.markup = std::move(markup);
        if (!rootClosed_ && !open_.empty()) {
            const Index parent = open_.back();
            const Element& p = doc_.elements[parent];
            kept.parent = parent;
            kept.after = p.lastChild;
            const std::uint32_t from = p.lastChild == kNil ? p.begin : doc_.elements[p.lastChild].end;
            kept.offset = textSize() - from;
        }
        doc_.contentMarkup.push_back(std::move(kept));
    }

    Document& doc_;
    const ElementKindTable& kinds_;
    std::vector<Index> open_;
    bool rootSeen_ = false;
    bool rootClosed_ = false;
    NameTable<Index> definitions_;
    NameTable<std::uint32_t> positions_;
    std::vector<std::uint8_t> titleUse_;
    std::vector<Extra> extras_;
};

}  // namespace

std::unique_ptr<ParseHandler> makeContentLoader(Document& doc, const ElementKindTable& kinds) {
    return std::make_unique<ContentLoader>(doc, kinds);
}

}  // namespace voka::headless
