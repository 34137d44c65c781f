// Small full-form settings documents written into a temporary folder, for
// the settings and plug-in tests: a shared settings document with chosen
// versions and preference values, and a main settings document whose
// skeleton may lack one element.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace voka::testing {

// A folder of its own under the system's temporary directory, removed at the end.
class TempFolder {
public:
    TempFolder() {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() / ("voka-h3-" + std::to_string(random()) + "-" +
                                                          std::to_string(random()));
        std::filesystem::create_directories(path_);
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
        for (auto& entry : std::filesystem::recursive_directory_iterator(path_, ignored)) {
            std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all, ignored);
        }
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

inline void writeFile(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline std::string escapeXml(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '<') out += "&lt;";
        else if (c == '>') out += "&gt;";
        else if (c == '&') out += "&amp;";
        else if (c == '"') out += "&quot;";
        else out += c;
    }
    return out;
}

inline const std::vector<std::string>& preferenceKeys() {
    static const std::vector<std::string> keys = {
        "MainSettingsDocPath", "DefaultCategory",   "ExternalCallDelimiter", "DefaultValidationScheme",
        "AutoValidateAttrs",   "ApplyStrikethroughText", "ValRule1Active", "ValRule2Active",
        "ValRule3Active",      "ValRule4Active",    "DefaultFilterType",     "DefaultColoringScheme",
        "Extra101",            "Extra102"};
    return keys;
}

// A shared settings document: root "BR_Settings" with the two versions, and
// (unless `group` is empty) a "SettingsGroupE" carrying the given values.
// Every preference key is declared, whether it has a value or not.
struct SharedSettings {
    int version1 = 1;
    int version2 = 1;
    std::optional<std::map<std::string, std::string>> group = std::map<std::string, std::string>{};
};

inline std::string sharedSettingsXml(const SharedSettings& s) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<voka-document version=\"1\">\n"
                      "  <element-definitions>\n"
                      "    <element-definition tag=\"BR_Settings\" type=\"1\">\n"
                      "      <attribute-definition name=\"Version1\" kind=\"0\" flags=\"0\"/>\n"
                      "      <attribute-definition name=\"Version2\" kind=\"0\" flags=\"0\"/>\n"
                      "    </element-definition>\n"
                      "    <element-definition tag=\"SettingsGroupE\" type=\"1\">\n";
    for (const std::string& key : preferenceKeys()) {
        xml += "      <attribute-definition name=\"" + key + "\" kind=\"0\" flags=\"0\"/>\n";
    }
    xml += "    </element-definition>\n  </element-definitions>\n  <flow name=\"A\" main=\"1\">\n"
           "    <element tag=\"BR_Settings\">\n"
           "      <attribute name=\"Version1\"><value>" + std::to_string(s.version1) + "</value></attribute>\n"
           "      <attribute name=\"Version2\"><value>" + std::to_string(s.version2) + "</value></attribute>\n";
    if (s.group) {
        xml += "      <element tag=\"SettingsGroupE\">\n";
        for (const auto& [key, value] : *s.group) {
            xml += "        <attribute name=\"" + key + "\"><value>" + escapeXml(value) + "</value></attribute>\n";
        }
        xml += "      </element>\n";
    }
    xml += "    </element>\n  </flow>\n</voka-document>\n";
    return xml;
}

// A main settings document with one category "Software" holding one
// colouring scheme "By audience"; `omit` names a skeleton element left out
// (with everything inside it).
inline std::string mainSettingsXml(const std::string& omit = "") {
    struct Node {
        std::string tag;
        std::string name;
        std::vector<Node> children;
    };
    const Node tree{"VKP_MainSettings", "", {
        {"SchemeCategories", "", {
            {"SchemeCategory", "Software", {
                {"FilterSchemes", "", {}},
                {"ColoringSchemes", "", {{"Scheme", "By audience", {}}}},
                {"ValidationSchemes", "", {{"Scheme", "Audience check", {}}}},
            }},
        }},
        {"ColorList", "", {}},
        {"AttributeList", "", {}},
    }};
    const char* tags[] = {"VKP_MainSettings", "SchemeCategories", "SchemeCategory", "FilterSchemes",
                          "ColoringSchemes",  "ValidationSchemes", "Scheme",        "ColorList",
                          "AttributeList"};
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<voka-document version=\"1\">\n"
                      "  <element-definitions>\n";
    for (const char* tag : tags) {
        xml += std::string("    <element-definition tag=\"") + tag + "\" type=\"1\">\n"
               "      <attribute-definition name=\"Name\" kind=\"0\" flags=\"0\"/>\n"
               "    </element-definition>\n";
    }
    xml += "  </element-definitions>\n  <flow name=\"A\" main=\"1\">\n";
    auto emit = [&](auto& self, const Node& node, int depth) -> void {
        if (node.tag == omit) return;
        const std::string indent(2 * depth, ' ');
        xml += indent + "<element tag=\"" + node.tag + "\">\n";
        if (!node.name.empty()) {
            xml += indent + "  <attribute name=\"Name\"><value>" + node.name + "</value></attribute>\n";
        }
        for (const Node& child : node.children) self(self, child, depth + 1);
        xml += indent + "</element>\n";
    };
    emit(emit, tree, 2);
    xml += "  </flow>\n</voka-document>\n";
    return xml;
}

}  // namespace voka::testing
