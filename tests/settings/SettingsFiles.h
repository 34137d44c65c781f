// Small full-form settings documents written into a temporary folder, for
// the settings and plug-in tests: a shared settings document with chosen
// versions and preference values, and a small main settings document.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace voka::testing {

// A folder of its own under the system's temporary directory, removed at the end.
class TempFolder {
public:
    TempFolder() { std::filesystem::create_directories(path_); }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_ =
        std::filesystem::temp_directory_path() / ("voka-t-" + std::to_string(std::random_device{}()));
};

inline void writeFile(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline const std::vector<std::string>& preferenceKeys() {
    static const std::vector<std::string> keys = {
        "MainSettingsDocPath", "DefaultCategory", "ExternalCallDelimiter", "DefaultValidationScheme",
        "AutoValidateAttrs", "ApplyStrikethroughText", "ValRule1Active", "ValRule2Active", "ValRule3Active",
        "ValRule4Active", "DefaultFilterType", "DefaultColoringScheme", "Extra101", "Extra102"};
    return keys;
}

inline std::string definitions(const std::vector<std::pair<std::string, std::vector<std::string>>>& elements) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<voka-document version=\"1\">\n<element-definitions>\n";
    for (const auto& [tag, attributes] : elements) {
        xml += "<element-definition tag=\"" + tag + "\" type=\"1\">\n";
        for (const std::string& name : attributes) xml += "<attribute-definition name=\"" + name + "\" kind=\"0\" flags=\"0\"/>\n";
        xml += "</element-definition>\n";
    }
    return xml + "</element-definitions>\n<flow name=\"A\" main=\"1\">\n";
}

inline std::string attribute(const std::string& name, const std::string& value) {
    std::string escaped;
    for (char c : value) escaped += c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : std::string(1, c);
    return "<attribute name=\"" + name + "\"><value>" + escaped + "</value></attribute>\n";
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
    std::string xml = definitions({{"BR_Settings", {"Version1", "Version2"}}, {"SettingsGroupE", preferenceKeys()}}) +
                      "<element tag=\"BR_Settings\">\n" + attribute("Version1", std::to_string(s.version1)) +
                      attribute("Version2", std::to_string(s.version2));
    if (s.group) {
        xml += "<element tag=\"SettingsGroupE\">\n";
        for (const auto& [key, value] : *s.group) xml += attribute(key, value);
        xml += "</element>\n";
    }
    return xml + "</element>\n</flow>\n</voka-document>\n";
}

// A main settings document with one category "Software" holding one
// colouring scheme "By audience" and one validation scheme "Audience check".
inline std::string mainSettingsXml() {
    const auto node = [](const std::string& tag, const std::string& name, const std::string& inner) {
        return "<element tag=\"" + tag + "\">\n" + (name.empty() ? "" : attribute("Name", name)) + inner + "</element>\n";
    };
    std::vector<std::pair<std::string, std::vector<std::string>>> defined;
    for (const char* tag : {"VKP_MainSettings", "SchemeCategories", "SchemeCategory", "FilterSchemes", "ColoringSchemes",
                            "Scheme", "ValidationSchemes", "ColorList", "AttributeList"}) defined.push_back({tag, {"Name"}});
    return definitions(defined) +
           node("VKP_MainSettings", "",
                node("SchemeCategories", "",
                     node("SchemeCategory", "Software",
                          node("FilterSchemes", "", "") + node("ColoringSchemes", "", node("Scheme", "By audience", "")) +
                              node("ValidationSchemes", "", node("Scheme", "Audience check", "")))) +
                    node("ColorList", "", "") + node("AttributeList", "", "")) +
           "</flow>\n</voka-document>\n";
}

}  // namespace voka::testing
