#include "cli/FindingFormats.h"

#include "cli/HtmlRendering.h"

#include <cctype>
#include <map>

namespace voka::cli {

namespace {

constexpr const char* kRuleNames[] = {"Invalid syntax", "Child/ancestor condition mismatch",
                                      "Unconditional child / conditional ancestor", "Invalid empty attribute"};
constexpr const char* kRuleIds[] = {"VOKA1", "VOKA2", "VOKA3", "VOKA4"};

void appendJsonString(std::string& out, const std::string& text) {
    out += '"';
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c == '\r') {
            out += "\\r";
        } else if (u < 0x20) {
            static const char kHex[] = "0123456789abcdef";
            out += "\\u00";
            out += kHex[u >> 4];
            out += kHex[u & 15];
        } else {
            out += c;
        }
    }
    out += '"';
}

std::string textLine(const Finding& f) {
    return f.file + ":" + std::to_string(f.line) + ":" + std::to_string(f.column) + ": rule " + std::to_string(f.rule) +
           " (" + ruleName(f.rule) + "): element <" + f.element + "> attribute " + f.attribute + ": value \"" + f.value +
           "\": " + f.message + "\n";
}

std::string json(const std::vector<Finding>& findings) {
    std::string out = "[";
    for (std::size_t i = 0; i < findings.size(); ++i) {
        const Finding& f = findings[i];
        out += i ? ",\n  {" : "\n  {";
        out += "\"file\": ";
        appendJsonString(out, f.file);
        out += ", \"line\": " + std::to_string(f.line) + ", \"column\": " + std::to_string(f.column) +
               ", \"rule\": " + std::to_string(f.rule) + ", \"ruleName\": ";
        appendJsonString(out, ruleName(f.rule));
        out += ", \"element\": ";
        appendJsonString(out, f.element);
        out += ", \"attribute\": ";
        appendJsonString(out, f.attribute);
        out += ", \"value\": ";
        appendJsonString(out, f.value);
        out += ", \"message\": ";
        appendJsonString(out, f.message);
        out += "}";
    }
    out += findings.empty() ? "]\n" : "\n]\n";
    return out;
}

// A file path as a relative URI reference: every byte but unreserved ones and `/` percent-encoded.
std::string uriOf(const std::string& path) { return urlEncodedPath(path); }

std::string sarif(const std::vector<Finding>& findings) {
    std::string out =
        "{\n  \"$schema\": \"https://json.schemastore.org/sarif-2.1.0-rtm.5.json\",\n  \"version\": \"2.1.0\",\n"
        "  \"runs\": [{\n    \"tool\": {\"driver\": {\"name\": \"voka\", \"rules\": [";
    for (int rule = 1; rule <= 4; ++rule) {
        out += rule > 1 ? ", " : "";
        out += "{\"id\": \"" + std::string(kRuleIds[rule - 1]) + "\", \"name\": ";
        std::string name;
        for (const char c : std::string(kRuleNames[rule - 1]))
            if (std::isalnum(static_cast<unsigned char>(c))) name += c;
        appendJsonString(out, name);
        out += ", \"shortDescription\": {\"text\": ";
        appendJsonString(out, kRuleNames[rule - 1]);
        out += "}}";
    }
    out += "]}},\n    \"columnKind\": \"unicodeCodePoints\",\n    \"results\": [";
    for (std::size_t i = 0; i < findings.size(); ++i) {
        const Finding& f = findings[i];
        const int rule = f.rule >= 1 && f.rule <= 4 ? f.rule : 1;
        out += i ? ",\n      {" : "\n      {";
        out += "\"ruleId\": \"" + std::string(kRuleIds[rule - 1]) + "\", \"ruleIndex\": " + std::to_string(rule - 1) +
               ", \"level\": \"error\", \"message\": {\"text\": ";
        appendJsonString(out, f.message);
        out += "}, \"locations\": [{\"physicalLocation\": {\"artifactLocation\": {\"uri\": ";
        appendJsonString(out, uriOf(f.file));
        out += "}";
        if (f.line > 0) {
            out += ", \"region\": {\"startLine\": " + std::to_string(f.line);
            if (f.column > 0) out += ", \"startColumn\": " + std::to_string(f.column);
            out += "}";
        }
        out += "}}]}";
    }
    out += findings.empty() ? "]\n  }]\n}\n" : "\n    ]\n  }]\n}\n";
    return out;
}

std::string junit(const std::vector<Finding>& findings, const std::vector<std::string>& files) {
    std::map<std::string, std::vector<const Finding*>> byFile;
    for (const std::string& file : files) byFile[file];
    for (const Finding& f : findings) byFile[f.file].push_back(&f);
    std::size_t failing = 0;
    for (const auto& [file, list] : byFile) failing += list.empty() ? 0 : 1;
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"voka validate\" tests=\"" +
                      std::to_string(byFile.size()) + "\" failures=\"" + std::to_string(failing) + "\">\n" +
                      "  <testsuite name=\"voka validate\" tests=\"" + std::to_string(byFile.size()) +
                      "\" failures=\"" + std::to_string(failing) + "\">\n";
    for (const auto& [file, list] : byFile) {
        out += "    <testcase classname=\"voka.validate\" name=\"";
        appendHtmlEscaped(out, file);
        out += "\"";
        if (list.empty()) {
            out += "/>\n";
            continue;
        }
        out += ">\n      <failure message=\"";
        appendHtmlEscaped(out, std::to_string(list.size()) + (list.size() == 1 ? " finding" : " findings"));
        out += "\" type=\"validation\">";
        std::string lines;
        for (const Finding* f : list) lines += textLine(*f);
        appendHtmlEscaped(out, lines);
        out += "</failure>\n    </testcase>\n";
    }
    out += "  </testsuite>\n</testsuites>\n";
    return out;
}

}  // namespace

const char* ruleName(int rule) { return rule >= 1 && rule <= 4 ? kRuleNames[rule - 1] : "Unknown rule"; }

void writeFindings(std::ostream& out, FindingFormat format, const std::vector<Finding>& findings,
                   const std::vector<std::string>& files) {
    switch (format) {
    case FindingFormat::Text:
        for (const Finding& f : findings) out << textLine(f);
        return;
    case FindingFormat::Json:
        out << json(findings);
        return;
    case FindingFormat::Sarif:
        out << sarif(findings);
        return;
    case FindingFormat::Junit:
        out << junit(findings, files);
        return;
    }
}

}  // namespace voka::cli
