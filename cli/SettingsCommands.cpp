#include "cli/SettingsCommands.h"

#include "frame/Strings.h"
#include "host/headless/HostPaths.h"
#include "host/headless/persist/Persist.h"
#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"

#include <libxml/xmlreader.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <optional>
#include <string_view>

namespace voka::cli {
namespace {

using headless::Document;
using headless::Index;
using headless::kNil;

const std::vector<std::string> kNoValues;
const std::string kNoTag;

// A loaded settings document read the way the plug-in's settings access
// reads it: an attribute's values without the empty ones, the first value
// as the setting, elements found by tag in pre-order.
class SettingsView {
public:
    explicit SettingsView(const Document& doc) : doc_(doc) {}

    Index root() const {
        for (const headless::Flow& flow : doc_.flows)
            if (flow.main) return flow.root;
        return doc_.flows.empty() ? kNil : doc_.flows.front().root;
    }
    Index parent(Index e) const { return doc_.elements[e].parent; }
    const std::string& tag(Index e) const {
        const Index d = doc_.elements[e].definition;
        return d < doc_.definitions.size() ? doc_.definitions[d].tag : kNoTag;
    }
    std::vector<Index> children(Index e) const {
        std::vector<Index> list;
        if (e == kNil) return list;
        for (Index c = doc_.elements[e].firstChild; c != kNil; c = doc_.elements[c].nextSibling)
            if (doc_.elements[c].alive) list.push_back(c);
        return list;
    }
    const std::vector<std::string>& values(Index e, std::string_view name) const {
        const Index d = doc_.elements[e].definition;
        if (d >= doc_.definitions.size()) return kNoValues;
        const auto& index = doc_.definitions[d].attributeIndex;
        const auto found = index.find(std::string(name));
        if (found == index.end()) return kNoValues;
        return doc_.values.visible(doc_.attributeValues(e, found->second));
    }
    std::string first(Index e, std::string_view name) const {
        const std::vector<std::string>& list = values(e, name);
        return list.empty() ? std::string() : list.front();
    }
    // The attributes written on the element, empty ones too, in the order it holds them.
    std::vector<std::string> written(Index e) const {
        std::vector<std::string> names;
        const headless::Element& element = doc_.elements[e];
        if (element.definition >= doc_.definitions.size()) return names;
        const headless::ElementDefinition& definition = doc_.definitions[element.definition];
        for (std::uint32_t i = 0; i < element.attributesCount; ++i) {
            const std::uint32_t position = doc_.attributeSlots[element.attributesBegin + i].position;
            if (position < definition.attributes.size()) names.push_back(definition.attributes[position].name);
        }
        return names;
    }
    // `start` itself or its first descendant in pre-order with the tag, as the settings search finds it.
    Index find(Index start, std::string_view wanted) const {
        if (start == kNil) return kNil;
        Index e = start;
        for (;;) {
            if (doc_.elements[e].alive && tag(e) == wanted) return e;
            if (doc_.elements[e].firstChild != kNil) {
                e = doc_.elements[e].firstChild;
                continue;
            }
            while (e != start && doc_.elements[e].nextSibling == kNil) e = doc_.elements[e].parent;
            if (e == start) return kNil;
            e = doc_.elements[e].nextSibling;
        }
    }
    // "VKP_MainSettings[1]/SchemeCategories[1]/...": where a finding is when no line is known.
    std::string path(Index e) const {
        std::vector<std::string> steps;
        for (Index i = e; i != kNil; i = parent(i)) {
            int position = 1;
            const Index up = parent(i);
            if (up != kNil)
                for (Index c = doc_.elements[up].firstChild; c != i && c != kNil; c = doc_.elements[c].nextSibling)
                    position += tag(c) == tag(i);
            steps.push_back(tag(i) + "[" + std::to_string(position) + "]");
        }
        std::string text;
        for (auto step = steps.rbegin(); step != steps.rend(); ++step) text += (text.empty() ? "" : "/") + *step;
        return text;
    }

private:
    const Document& doc_;
};

struct KindWords {
    SchemeKind kind;
    const char* word;
};
// The order voka schemes lists them in.
constexpr std::array<KindWords, 3> kKinds = {{
    {SchemeKind::Coloring, "coloring"},
    {SchemeKind::Filter, "filter"},
    {SchemeKind::Validation, "validation"},
}};

constexpr std::array<const char*, 4> kOptions = {kAttrIncludeEddDefaults, kAttrSpaceDelimited, kAttrIgnoreCase,
                                                 kAttrProcessAllFlows};

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::string named(const SettingsView& view, Index e) {
    const std::string name = view.first(e, kAttrName);
    return name.empty() ? "(no name)" : quoted(name);
}

std::string joined(const std::vector<std::string>& parts, const char* separator) {
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
    return text;
}

// False after saying why the file cannot serve as main settings.
bool loadSettings(const std::string& systemPath, headless::LoadResult& loaded) {
    loaded = headless::loadFile(systemPath);
    if (loaded.document) return true;
    if (loaded.book) std::cerr << "voka: " << systemPath << " is a book, not a main settings document\n";
    else std::cerr << "voka: cannot read the main settings: " << loaded.error << "\n";
    return false;
}

// --- voka schemes -----------------------------------------------------------------

std::string optionsOn(const SettingsView& view, Index scheme) {
    std::vector<std::string> on;
    for (const char* option : kOptions)
        if (optionIsOn(view.first(scheme, option))) on.emplace_back(option);
    return on.empty() ? "no options on" : "on: " + joined(on, ", ");
}

// "audience = novice, expert; or platform = linux", as the rule or scheme tests them.
std::string conditions(const SettingsView& view, const std::vector<Index>& attributes, bool matchAll) {
    std::vector<std::string> parts;
    for (Index attribute : attributes) {
        const std::string values = joined(view.values(attribute, kAttrValues), matchAll ? " and " : ", ");
        const std::string name = view.first(attribute, kAttrName);
        parts.push_back((name.empty() ? "(no name)" : name) + " = " + (values.empty() ? "(no values)" : values));
    }
    return joined(parts, matchAll ? "; and " : "; or ");
}

std::string styleText(const SettingsView& view, Index rule) {
    const std::vector<std::string>& written = view.values(rule, kAttrStyle);
    const int style = written.empty() ? 0 : leadingInteger(written.front());
    if (style < 0 || style > 7) return "no style (Style " + std::to_string(style) + ")";
    return voka::styleLabel(style);
}

bool numberIsOne(const SettingsView& view, Index rule, const char* name) {
    const std::vector<std::string>& written = view.values(rule, name);
    return !written.empty() && leadingInteger(written.front()) == 1;
}

// Every child of a coloring scheme is one of its rules to the plug-in, whatever its tag.
void printRules(const SettingsView& view, Index scheme) {
    const std::vector<Index> rules = view.children(scheme);
    if (rules.empty()) std::cout << "    no rules\n";
    int position = 0;
    for (Index rule : rules) {
        std::string colour = view.first(rule, kAttrName);
        dropFirstCharacters(colour, 3);
        const bool matchAll = numberIsOne(view, rule, kAttrMatchAll);
        std::cout << "    rule " << ++position << ": " << (colour.empty() ? "(no colour)" : colour) << ", "
                  << styleText(view, rule) << (matchAll ? ", match all" : "")
                  << (numberIsOne(view, rule, kAttrOverride) ? ", override" : "") << ": ";
        const std::vector<Index> tests = view.children(rule);
        std::cout << (tests.empty() ? "no conditions, so it never matches" : conditions(view, tests, matchAll)) << "\n";
    }
}

void printCategory(const SettingsView& view, Index category) {
    std::cout << "category " << named(view, category) << "\n";
    for (const KindWords& kind : kKinds) {
        const Index container = view.find(category, schemeContainerTag(kind.kind));
        const std::vector<Index> schemes = view.children(container);
        if (schemes.empty()) std::cout << "  no " << kind.word << " schemes\n";
        for (Index scheme : schemes) {
            std::cout << "  " << kind.word << " scheme " << named(view, scheme) << " (" << optionsOn(view, scheme)
                      << ")\n";
            if (kind.kind == SchemeKind::Coloring) {
                printRules(view, scheme);
                continue;
            }
            const std::vector<Index> attributes = view.children(scheme);
            if (attributes.empty()) std::cout << "    no attributes\n";
            for (Index attribute : attributes) std::cout << "    " << conditions(view, {attribute}, false) << "\n";
        }
    }
}

// --- voka check-settings ------------------------------------------------------------

struct Finding {
    Index element = kNil;
    std::string attribute;  // the attribute of the element meant, "" for the element itself
    std::string message;
    Index first = kNil;     // for a second of a name: the first, which the plug-in uses
};

// Where each element of the loaded document starts in its file, and the
// <attribute> children of the full form, from a second light pass over the
// file; the loader keeps no lines. Elements are matched by their number in
// document order, so when the counts differ (the file changed in between,
// or entities made elements) no line is known and paths are shown instead.
class SourceLines {
public:
    SourceLines(const std::string& systemPath, std::size_t elementCount, bool fullForm) {
        read(systemPath, elementCount, fullForm);
    }
    bool known() const { return !lines_.empty(); }
    long line(Index element, const std::string& attribute) const {
        if (element >= lines_.size()) return 0;
        long found = lines_[element];
        if (attribute.empty()) return found;
        const auto range = attributes_.equal_range(element);
        for (auto it = range.first; it != range.second; ++it)
            if (it->second.first == attribute) found = it->second.second;  // the last one written counts
        return found;
    }

private:
    enum class Node { Root, Flow, Element, Other };

    void read(const std::string& systemPath, std::size_t elementCount, bool fullForm) {
        // The file was a regular one when loaded; a special file put in its place since must not block this pass.
        const int fd = ::open(systemPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        if (fd < 0) return;
        struct stat status {};
        if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
            ::close(fd);
            return;
        }
        // No network, no DTD, no entity expansion: only the markup as written is looked at.
        xmlTextReaderPtr reader = xmlReaderForFd(fd, systemPath.c_str(), nullptr,
                                                 XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                                                     XML_PARSE_BIG_LINES);
        if (!reader) {
            ::close(fd);
            return;
        }
        std::vector<long> lines;
        std::vector<Node> open;
        std::vector<Index> openElement;
        int result = 0;
        while ((result = xmlTextReaderRead(reader)) == 1 && lines.size() <= elementCount) {
            if (xmlTextReaderNodeType(reader) != XML_READER_TYPE_ELEMENT) continue;
            const int depth = xmlTextReaderDepth(reader);
            if (depth < 0 || static_cast<std::size_t>(depth) > open.size()) break;
            open.resize(static_cast<std::size_t>(depth));
            openElement.resize(static_cast<std::size_t>(depth));
            const std::string_view name = reinterpret_cast<const char*>(xmlTextReaderConstName(reader));
            const Node parent = depth > 0 ? open.back() : Node::Other;
            const xmlNodePtr node = xmlTextReaderCurrentNode(reader);
            const long line = node ? xmlGetLineNo(node) : xmlTextReaderGetParserLineNumber(reader);
            Node kind = Node::Other;
            Index element = depth > 0 ? openElement.back() : kNil;
            if (!fullForm) {
                kind = Node::Element;
            } else if (depth == 0 && name == "voka-document") {
                kind = Node::Root;
            } else if (parent == Node::Root && name == "flow") {
                kind = Node::Flow;
            } else if ((parent == Node::Flow || parent == Node::Element) && name == "element") {
                kind = Node::Element;
            } else if (parent == Node::Element && name == "attribute") {
                if (xmlChar* attributeName = xmlTextReaderGetAttribute(reader, BAD_CAST "name")) {
                    attributes_.emplace(element, std::make_pair(std::string(reinterpret_cast<char*>(attributeName)), line));
                    xmlFree(attributeName);
                }
            }
            if (kind == Node::Element) {
                element = static_cast<Index>(lines.size());
                lines.push_back(line);
            }
            if (xmlTextReaderIsEmptyElement(reader) == 1) continue;
            open.push_back(kind);
            openElement.push_back(element);
        }
        xmlFreeTextReader(reader);
        ::close(fd);
        if (result == 0 && lines.size() == elementCount) lines_ = std::move(lines);
        else attributes_.clear();
    }

    std::vector<long> lines_;                                      // by element
    std::multimap<Index, std::pair<std::string, long>> attributes_;  // element -> (name, line), in file order
};

class Checker {
public:
    explicit Checker(const SettingsView& view) : view_(view) {}

    std::vector<Finding> run() {
        const Index root = view_.root();
        if (root == kNil) {
            add(kNil, "", "the main flow holds no element, so there are no categories and no schemes");
            return std::move(findings_);
        }
        if (view_.find(root, kTagMainSettings) == kNil)
            add(root, "", "there is no VKP_MainSettings element, which the preferences require of a main settings file");
        readColorList(root);
        readAttributeLibrary(root);
        const Index categories = view_.find(root, kTagSchemeCategories);
        if (categories == kNil) add(root, "", "there is no SchemeCategories element, so there are no categories to choose");
        else checkCategories(categories);
        return std::move(findings_);
    }

private:
    void add(Index element, const std::string& attribute, std::string message, Index first = kNil) {
        findings_.push_back(Finding{element, attribute, std::move(message), first});
    }

    void unexpected(Index element, const std::string& where, const std::string& consequence) {
        add(element, "", where + ": <" + view_.tag(element) + "> " + consequence);
    }

    // Two of one name: the plug-in finds the first by its name and never the second.
    void checkName(Index element, const std::string& where, const std::string& what,
                   std::map<std::string, Index>& seen) {
        const std::string name = view_.first(element, kAttrName);
        if (name.empty()) {
            add(element, kAttrName, where + ": a " + what + " without a Name cannot be chosen");
        } else if (isNoneName(name)) {
            add(element, kAttrName, where + ": a " + what + " named " + quoted(name) +
                                        " cannot be chosen: the plug-in takes the name for no " + what + " at all");
        } else if (auto [first, isNew] = seen.emplace(name, element); !isNew) {
            add(element, kAttrName, where + ": a second " + what + " named " + quoted(name) + ", which the plug-in never uses",
                first->second);
        }
    }

    void readColorList(Index root) {
        const Index list = view_.find(root, kTagColorList);
        if (list == kNil) {
            add(root, "", "there is no ColorList element (the master colour list), which the preferences require of a "
                          "main settings file; the rules' colours are not checked");
            return;
        }
        colors_ = view_.values(list, kAttrNames);
    }

    void readAttributeLibrary(Index root) {
        const Index list = view_.find(root, kTagAttributeList);
        if (list == kNil) {
            add(root, "", "there is no AttributeList element (the attribute library), which the preferences require "
                          "of a main settings file; the schemes' attributes are not checked");
            return;
        }
        library_.emplace();
        for (Index entry : view_.children(list)) {
            if (view_.tag(entry) != kTagAttribute) {
                unexpected(entry, "AttributeList", "is not an Attribute; the attribute library holds Attribute elements only");
                continue;
            }
            const std::string name = view_.first(entry, kAttrName);
            if (name.empty()) add(entry, kAttrName, "AttributeList: an Attribute without a Name");
            else library_->push_back(name);
        }
    }

    void checkCategories(Index categories) {
        std::map<std::string, Index> names;
        int position = 0;
        for (Index category : view_.children(categories)) {
            ++position;
            if (view_.tag(category) != kTagSchemeCategory) {
                unexpected(category, "SchemeCategories",
                           "is not a SchemeCategory: the plug-in lists it as a category but cannot open it");
                continue;
            }
            const std::string name = view_.first(category, kAttrName);
            const std::string where =
                name.empty() ? "category " + std::to_string(position) : "category " + quoted(name);
            checkName(category, "SchemeCategories", "category", names);
            checkCategory(category, where);
        }
    }

    void checkCategory(Index category, const std::string& where) {
        std::map<std::string, Index> containers;
        for (Index child : view_.children(category)) {
            const std::string& tag = view_.tag(child);
            const auto kind = std::find_if(kKinds.begin(), kKinds.end(),
                                           [&](const KindWords& k) { return schemeContainerTag(k.kind) == tag; });
            if (kind == kKinds.end()) {
                unexpected(child, where, "is none of FilterSchemes, ColoringSchemes and ValidationSchemes; the plug-in ignores it");
            } else if (!containers.emplace(tag, child).second) {
                add(child, "", where + ": a second " + tag + "; the plug-in reads only the first", containers[tag]);
            } else {
                checkSchemes(child, *kind, where);
            }
        }
    }

    void checkSchemes(Index container, const KindWords& kind, const std::string& where) {
        std::map<std::string, Index> names;
        int position = 0;
        for (Index scheme : view_.children(container)) {
            ++position;
            const std::string what = std::string(kind.word) + " scheme";
            if (view_.tag(scheme) != kTagScheme) {
                unexpected(scheme, where + ", " + schemeContainerTag(kind.kind),
                           "is not a Scheme: the plug-in lists it as a " + what + " but cannot open it");
                continue;
            }
            const std::string name = view_.first(scheme, kAttrName);
            checkName(scheme, where, what, names);
            const std::string context =
                where + ", " + what + " " + (name.empty() ? std::to_string(position) : quoted(name));
            checkOptions(scheme, context);
            if (kind.kind == SchemeKind::Coloring) checkRules(scheme, context);
            else checkConditions(scheme, context, "one of the scheme's attributes", kind.kind != SchemeKind::Validation);
        }
    }

    void checkOptions(Index scheme, const std::string& context) {
        for (const std::string& attribute : view_.written(scheme)) {
            if (attribute == kAttrName || attribute == kAttrComment) continue;
            const bool option = std::find(kOptions.begin(), kOptions.end(), attribute) != kOptions.end();
            if (!option) {
                std::string hint;
                for (const char* known : kOptions)
                    if (equalsIgnoreCase(known, attribute) ||
                        (attribute.size() > 3 && std::string_view(known).substr(0, attribute.size()) == attribute))
                        hint = " (did you mean " + std::string(known) + "?)";
                add(scheme, attribute, context + ": " + quoted(attribute) +
                                           " is not a scheme option, and the plug-in ignores it" + hint +
                                           "; a Scheme takes Name, Comment, IncludeEDDDefaults, SpaceDelimitedVals, "
                                           "IgnoreCaseSensitivity and ProcessAllFlows");
                continue;
            }
            const std::string value = view_.first(scheme, attribute);
            if (!value.empty() && !equalsIgnoreCase(value, "true") && !equalsIgnoreCase(value, "false"))
                add(scheme, attribute, context + ": " + attribute + " " + quoted(value) +
                                           " is neither True nor False; the plug-in reads it as False");
        }
    }

    void checkRules(Index scheme, const std::string& context) {
        unsigned position = 0;
        int read = 0;
        for (Index rule : view_.children(scheme)) {
            ++read;
            if (view_.tag(rule) != kTagRule) {
                unexpected(rule, context, "is not a Rule, yet the plug-in reads it as its rule " + std::to_string(read));
                continue;
            }
            ++position;
            checkRule(rule, position, context + ", rule " + std::to_string(position));
        }
    }

    void checkRule(Index rule, unsigned position, const std::string& context) {
        const std::string name = view_.first(rule, kAttrName);
        const std::string expected = ruleNameWithPosition(position, "");
        const std::string prefix = name.substr(0, std::min<std::size_t>(3, name.size()));
        const std::size_t digits = prefix.find_first_not_of("0123456789");
        const bool prefixShaped = name.size() >= 3 && digits != 0 &&
                                  (digits == std::string::npos || prefix.find_first_not_of(' ', digits) == std::string::npos);
        if (name.empty()) {
            add(rule, kAttrName, context + ": a Rule without a Name has no colour; write " + quoted(expected + "Red") +
                                     " for a red rule " + std::to_string(position));
        } else if (!prefixShaped) {
            std::string colour = name;
            dropFirstCharacters(colour, 3);
            // What the user meant: the name without whatever number and blanks it starts with.
            std::string meant = name.substr(std::min(name.find_first_not_of("0123456789"), name.size()));
            meant.erase(0, std::min(meant.find_first_not_of(' '), meant.size()));
            add(rule, kAttrName, context + ": Name " + quoted(name) +
                                     " does not start with its position in three characters, so the plug-in reads "
                                     "the colour " + quoted(colour) + "; write " + quoted(ruleNameWithPosition(position, meant)));
        } else {
            if (prefix != expected.substr(0, 3))
                add(rule, kAttrName, context + ": Name " + quoted(name) + " carries the position of rule " +
                                         std::to_string(leadingInteger(prefix)) + "; write " +
                                         quoted(ruleNameWithPosition(position, name.substr(3))));
            checkColour(rule, name.substr(3), context);
        }
        checkStyle(rule, context);
        for (const char* flag : {kAttrMatchAll, kAttrOverride}) {
            const std::vector<std::string>& written = view_.values(rule, flag);
            if (written.empty()) continue;
            const std::string value = trimmed(written.front());
            if (value == "0" || value == "1") continue;
            add(rule, flag, context + ": " + flag + " " + quoted(written.front()) +
                                " is neither 1 nor 0; the plug-in reads it as " +
                                (leadingInteger(written.front()) == 1 ? "1 (on)" : "0 (off)"));
        }
        if (view_.children(rule).empty())
            add(rule, "", context + ": the rule has no Attribute, so it never matches");
        checkConditions(rule, context, "one of the rule's conditions");
    }

    void checkColour(Index rule, const std::string& colour, const std::string& context) {
        if (colour == kSkipName || colour == kRefreshEddName || !colors_) return;
        if (colour.empty()) {
            add(rule, kAttrName, context + ": the Name has a position but no colour after it");
            return;
        }
        if (std::find(colors_->begin(), colors_->end(), colour) != colors_->end()) return;
        std::string hint;
        const std::string bare = trimmed(colour);
        for (const std::string& known : *colors_) {
            if (known == bare)
                hint = " (it has blanks around it: the position takes exactly three characters, \"1  \" to \"9  \", then "
                       "\"10 \" on)";
            else if (equalsIgnoreCase(known, bare))
                hint = " (the list has " + quoted(known) + ": colour names are compared in their case)";
        }
        if (hint.empty() && (equalsIgnoreCase(bare, kSkipName) || equalsIgnoreCase(bare, kRefreshEddName)))
            hint = " (write " + std::string(equalsIgnoreCase(bare, kSkipName) ? kSkipName : kRefreshEddName) +
                   " exactly)";
        add(rule, kAttrName, context + ": the colour " + quoted(colour) + " is not in the master colour list (ColorList)" + hint);
    }

    void checkStyle(Index rule, const std::string& context) {
        const std::vector<std::string>& written = view_.values(rule, kAttrStyle);
        if (written.empty()) return;
        const std::string& text = written.front();
        const int style = leadingInteger(text);
        std::string digits = trimmed(text);
        if (!digits.empty() && (digits[0] == '-' || digits[0] == '+')) digits.erase(0, 1);
        if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos)
            add(rule, kAttrStyle, context + ": Style " + quoted(text) + " is not a number from 0 to 7; the plug-in reads it as " +
                                      (style >= 0 && style <= 7 ? std::to_string(style) + " (" + voka::styleLabel(style) + ")"
                                                                : std::to_string(style) + ", no style"));
        else if (style < 0 || style > 7)
            add(rule, kAttrStyle, context + ": Style " + quoted(text) + " is outside 0 to 7, so the rule gives no style");
    }

    // The conditions of a rule, or of a filter or validation scheme: its children.
    void checkConditions(Index holder, const std::string& context, const char* readAs, bool anyValueIsKeyword = true) {
        for (Index attribute : view_.children(holder)) {
            if (view_.tag(attribute) != kTagAttribute) {
                unexpected(attribute, context, std::string("is not an Attribute, yet the plug-in reads it as ") + readAs);
                continue;
            }
            const std::string name = view_.first(attribute, kAttrName);
            if (name.empty()) {
                add(attribute, kAttrName, context + ": an Attribute without a Name, which no element's attribute matches");
            } else if (library_ && std::find(library_->begin(), library_->end(), name) == library_->end()) {
                std::string hint;
                for (const std::string& known : *library_)
                    if (equalsIgnoreCase(known, name)) hint = " (the library has " + quoted(known) + ")";
                add(attribute, kAttrName,
                    context + ": the attribute " + quoted(name) + " is not in the attribute library (AttributeList)" + hint);
            }
            for (const std::string& value : view_.values(attribute, kAttrValues)) {
                if (value.size() < 2 || value.front() != '<' || value.back() != '>') continue;
                if (equalsIgnoreCase(value, kNoValue)) continue;
                if (!equalsIgnoreCase(value, kAnyValue))
                    add(attribute, kAttrValues, context + ": " + quoted(value) +
                                                    " is not a keyword (those are <any value> and <no value>), so it "
                                                    "is compared as a plain value");
                else if (!anyValueIsKeyword)
                    add(attribute, kAttrValues, context + ": " + quoted(value) +
                                                    " is no keyword in a validation scheme: it is compared as a plain "
                                                    "value, which no element has");
            }
        }
    }

    const SettingsView& view_;
    std::optional<std::vector<std::string>> colors_, library_;
    std::vector<Finding> findings_;
};

}  // namespace

int listSchemes(Session& session, const std::string& category) {
    const std::string path = headless::toSystemPath(session.plugin().state().paths.localCopy);
    headless::LoadResult loaded;
    if (!loadSettings(path, loaded)) return kExitBadInput;
    const SettingsView view(*loaded.document);
    const std::vector<Index> categories = view.children(view.find(view.root(), kTagSchemeCategories));
    std::vector<Index> shown;
    for (Index c : categories) {
        // The plug-in opens the first category of a name; a second is never shown by it.
        if (category.empty()) shown.push_back(c);
        else if (view.first(c, kAttrName) == category) {
            shown.push_back(c);
            break;
        }
    }
    if (!category.empty() && shown.empty()) {
        std::vector<std::string> names;
        for (Index c : categories) names.push_back(named(view, c));
        std::cerr << "voka: there is no category " << quoted(category) << " in " << path << "; the categories are "
                  << (names.empty() ? "none" : joined(names, ", ")) << "\n";
        return kExitFailed;
    }
    std::cout << "main settings " << path << "\n";
    if (categories.empty()) std::cout << "no categories\n";
    for (Index c : shown) printCategory(view, c);
    return kExitOk;
}

int checkSettings(const std::string& path) {
    headless::LoadResult loaded;
    if (!loadSettings(path, loaded)) return kExitBadInput;
    const Document& doc = *loaded.document;
    const SettingsView view(doc);
    std::vector<Finding> findings = Checker(view).run();

    const SourceLines lines(path, doc.elements.size(), !doc.contentForm);
    auto lineOf = [&](const Finding& f) { return f.element == kNil ? 0L : lines.line(f.element, f.attribute); };
    if (lines.known())
        std::stable_sort(findings.begin(), findings.end(),
                         [&](const Finding& a, const Finding& b) { return lineOf(a) < lineOf(b); });
    else
        std::stable_sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
            return (a.element == kNil ? 0 : a.element + 1) < (b.element == kNil ? 0 : b.element + 1);
        });

    // What the loader skipped (an unknown element, text outside <text>) the plug-in never sees.
    for (const std::string& warning : loaded.warnings) std::cout << warning << "\n";
    for (const Finding& f : findings) {
        std::string message = f.message;
        if (f.first != kNil)
            message += lines.known() ? " (the first is at line " + std::to_string(lines.line(f.first, kAttrName)) + ")"
                                     : " (the first is " + view.path(f.first) + ")";
        if (f.element == kNil) std::cout << path << ": " << message << "\n";
        else if (lines.known()) std::cout << path << ":" << lineOf(f) << ": " << message << "\n";
        else std::cout << path << ": " << view.path(f.element) << ": " << message << "\n";
    }
    const std::size_t count = findings.size() + loaded.warnings.size();
    if (count == 0) {
        std::cout << path << ": no problems found\n";
        return kExitOk;
    }
    std::cerr << "voka: " << count << (count == 1 ? " problem" : " problems") << " in " << path << "\n";
    return kExitFailed;
}

}  // namespace voka::cli
