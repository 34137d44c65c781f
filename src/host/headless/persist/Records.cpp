#include "host/headless/persist/Records.h"

#include "host/headless/persist/XmlOut.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace voka::headless {

namespace {

struct FormatField {
    const char* name;
    std::uint8_t bit;
    std::uint8_t CharFormat::*member;
};

constexpr std::array<FormatField, 4> kFormatFields{{
    {"underlining", CharFormat::kUnderlining, &CharFormat::underlining},
    {"overline", CharFormat::kOverline, &CharFormat::overline},
    {"strikethrough", CharFormat::kStrikethrough, &CharFormat::strikethrough},
    {"change-bar", CharFormat::kChangeBar, &CharFormat::changeBar},
}};

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

void appendUtf8(std::string& out, std::uint32_t code) {
    if (code < 0x80) {
        out.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (code >> 6)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (code >> 12)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (code >> 18)));
        out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
}

struct NamedEntity {
    std::string_view name;
    char character;
};
constexpr std::array<NamedEntity, 5> kNamedEntities{{
    {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''},
}};

bool unescape(std::string_view raw, std::string& out) {
    out.clear();
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] != '&') {
            out.push_back(raw[i]);
            continue;
        }
        auto semicolon = raw.find(';', i);
        if (semicolon == std::string_view::npos) return false;
        std::string_view name = raw.substr(i + 1, semicolon - i - 1);
        i = semicolon;
        if (name.size() > 1 && name[0] == '#') {
            bool hex = name[1] == 'x';
            std::string_view digits = name.substr(hex ? 2 : 1);
            std::uint32_t code = 0;
            auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), code, hex ? 16 : 10);
            // Only characters XML can hold: the value may be written into a document again.
            const bool legal = code == 0x9 || code == 0xA || code == 0xD || (code >= 0x20 && code <= 0xD7FF) ||
                               (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
            if (ec != std::errc() || end != digits.data() + digits.size() || !legal) return false;
            appendUtf8(out, code);
            continue;
        }
        auto entity = std::find_if(kNamedEntities.begin(), kNamedEntities.end(),
                                   [&](const NamedEntity& e) { return e.name == name; });
        if (entity == kNamedEntities.end()) return false;
        out.push_back(entity->character);
    }
    return true;
}

}  // namespace

bool findField(const Fields& fields, std::string_view name, std::string& value) {
    for (const auto& [key, v] : fields) {
        if (key != name) continue;
        value = v;
        return true;
    }
    return false;
}

bool parseNumber(std::string_view text, std::uint32_t& number) {
    if (text.empty()) return false;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), number);
    return ec == std::errc() && end == text.data() + text.size();
}

bool parsePseudoAttributes(std::string_view data, Fields& fields) {
    fields.clear();
    std::size_t i = 0;
    const std::size_t n = data.size();
    for (;;) {
        while (i < n && isBlank(data[i])) ++i;
        if (i == n) return true;
        std::size_t nameStart = i;
        while (i < n && data[i] != '=' && !isBlank(data[i])) ++i;
        std::string_view name = data.substr(nameStart, i - nameStart);
        while (i < n && isBlank(data[i])) ++i;
        if (name.empty() || i == n || data[i] != '=') return false;
        ++i;
        while (i < n && isBlank(data[i])) ++i;
        if (i == n || (data[i] != '"' && data[i] != '\'')) return false;
        char quote = data[i++];
        auto close = data.find(quote, i);
        if (close == std::string_view::npos) return false;
        std::string value;
        if (!unescape(data.substr(i, close - i), value)) return false;
        fields.emplace_back(std::string(name), std::move(value));
        i = close + 1;
    }
}

std::string formatPseudoAttributes(const Fields& fields) {
    std::string out;
    for (const auto& [name, value] : fields) {
        out += ' ';
        out += name;
        out += "=\"";
        out += escapeAttributeValue(value);
        out += '"';
    }
    return out;
}

void NameCache::index(const Document& doc) {
    colors.clear();
    conditions.clear();
    for (std::size_t i = 0; i < doc.colors.size(); ++i) colors.emplace(doc.colors[i].name, static_cast<Index>(i));
    for (std::size_t i = 0; i < doc.conditions.size(); ++i)
        conditions.emplace(doc.conditions[i].name, static_cast<Index>(i));
}

Index NameCache::color(const Document&, const std::string& name) {
    auto found = colors.find(name);
    return found == colors.end() ? kNil : found->second;
}

Index NameCache::condition(Document& doc, const std::string& name) {
    auto found = conditions.find(name);
    if (found != conditions.end()) return found->second;
    auto index = static_cast<Index>(doc.conditions.size());
    doc.conditions.push_back(ConditionFormat{name, true});
    conditions.emplace(name, index);
    return index;
}

Fields formatFields(const Document& doc, const CharFormat& format) {
    Fields fields;
    if ((format.set & CharFormat::kColor) && format.color < doc.colors.size())
        fields.emplace_back("color", doc.colors[format.color].name);
    for (const FormatField& field : kFormatFields)
        if (format.set & field.bit) fields.emplace_back(field.name, std::to_string(format.*field.member));
    return fields;
}

bool readFormat(Document& doc, NameCache& names, const Fields& fields, CharFormat& format, std::string& problem) {
    format = CharFormat{};
    std::string value;
    if (findField(fields, "color", value)) {
        Index color = names.color(doc, value);
        if (color == kNil) {
            problem = "unknown colour \"" + value + "\"";
            return false;
        }
        format.set |= CharFormat::kColor;
        format.color = color;
    }
    for (const FormatField& field : kFormatFields) {
        if (!findField(fields, field.name, value)) continue;
        std::uint32_t number = 0;
        if (!parseNumber(value, number) || number > 255) {
            problem = std::string("bad ") + field.name + " \"" + value + "\"";
            return false;
        }
        format.set |= field.bit;
        format.*field.member = static_cast<std::uint8_t>(number);
    }
    return true;
}

std::string conditionNames(const Document& doc, const ConditionSet& set) {
    std::string joined;
    for (Index condition : set) {
        if (condition >= doc.conditions.size()) continue;
        if (!joined.empty()) joined += ';';
        joined += doc.conditions[condition].name;
    }
    return joined;
}

ConditionSet readConditionList(Document& doc, NameCache& names, std::string_view joined) {
    ConditionSet set;
    std::size_t start = 0;
    while (start <= joined.size()) {
        auto end = joined.find(';', start);
        if (end == std::string_view::npos) end = joined.size();
        if (end > start) set.push_back(names.condition(doc, std::string(joined.substr(start, end - start))));
        start = end + 1;
    }
    std::sort(set.begin(), set.end());
    set.erase(std::unique(set.begin(), set.end()), set.end());
    return set;
}

std::uint32_t readConditionSet(Document& doc, NameCache& names, std::string_view joined) {
    return doc.internConditionSet(readConditionList(doc, names, joined));
}

bool readRange(const Fields& fields, std::uint32_t textSize, std::uint32_t& begin, std::uint32_t& end) {
    std::string start, stop;
    if (!findField(fields, "start", start) || !findField(fields, "end", stop)) return false;
    if (!parseNumber(start, begin) || !parseNumber(stop, end)) return false;
    return begin < end && end <= textSize;
}

}  // namespace voka::headless
