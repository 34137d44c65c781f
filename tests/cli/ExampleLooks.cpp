// How the example book must look after colouring with two of its schemes,
// worked out by hand from the chapters and from the schemes as
// resources/example/README.md describes them: one row for each kind of look.
#include "Cli.h"

namespace voka::test {
namespace {

constexpr const char* kBlack = "#000000";
constexpr const char* kRed = "#FF0000";
constexpr const char* kGreen = "#00FF00";
constexpr const char* kBlue = "#0000FF";

}  // namespace

const std::vector<ExpectedLook> kByAudienceLooks = {
    {"01-overview", "If this is your first weather station", {kRed}, "novice"},
    {"01-overview", "Readings are also", {kBlue, 1}, "expert"},
    {"01-overview", "Skylark Station is the desktop companion", {kBlack}, "no audience anywhere around"},
    {"02-install", "winget install Larkfield.SkylarkStation", {kBlue, 1},
     "code block, expert by the DTD default, inside a novice topic"},
    {"03-configure", "Connect the console", {kBlue, 1, true},
     "\"admin expert\" inside an admin topic: blue and underlined over the topic's overline"},
    {"04-release-notes", "The Fleet console shows a map", {kGreen, 0, true}, "admin"},
};

const std::vector<ExpectedLook> kReleaseStatusLooks = {
    {"01-overview", "if you are upgrading.", {kGreen, 2}, "new"},
    {"02-install", "sudo apt install", {kBlue, 0, false, false, true}, "changed"},
    {"02-install", "A Fleet console needs a computer", {kBlack, 3}, "unchanged, with nothing coloured around it"},
    {"03-configure", "Stations not reporting", {kGreen, 2}, "table row marked new"},
    {"04-release-notes", "Release notes for version 3.2", {kBlack}, "no status"},
    {"04-release-notes", "Sensors and receivers from version 3.0", {kBlue, 3, false, false, true},
     "unchanged inside a changed topic: keeps blue and the change bar, adds the numeric underline"},
    {"04-release-notes", "Removed features", {kRed, 0, false, true}, "title inside a deleted topic"},
    {"04-release-notes", "The station map is empty", {kGreen, 2},
     "table row marked new inside an unchanged topic: the double underline replaces the numeric one"},
};

std::string savedLookMismatches(const headless::Document& doc, const std::string& chapter,
                                const std::vector<ExpectedLook>& looks) {
    return expectedMismatches(chapter, looks, [&](const std::string& text) {
        std::vector<Look> places;
        for (const headless::Flow& flow : doc.flows)
            for (std::size_t at = flow.text.find(text); at != std::string::npos; at = flow.text.find(text, at + 1)) {
                places.push_back(lookAt(doc, flow, static_cast<std::uint32_t>(at)));
                for (std::size_t byte = at; byte < at + text.size(); ++byte)
                    if (lookAt(doc, flow, static_cast<std::uint32_t>(byte)) != places.back()) places.back().rgb = "mixed";
            }
        return places;
    });
}

}  // namespace voka::test
