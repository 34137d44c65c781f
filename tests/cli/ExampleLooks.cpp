#include "ExampleLooks.h"

#include <sstream>

namespace voka::test {
namespace {

constexpr const char* kBlack = "#000000";
constexpr const char* kRed = "#FF0000";
constexpr const char* kGreen = "#00FF00";
constexpr const char* kBlue = "#0000FF";

Look look(const char* rgb, int underline = 0, bool overline = false, bool strikethrough = false, bool changeBar = false) {
    return Look{rgb, underline, overline, strikethrough, changeBar};
}

}  // namespace

const std::vector<ExpectedLook>& byAudienceLooks() {
    static const std::vector<ExpectedLook> looks = {
        {"01-overview", "If this is your first weather station", look(kRed), "novice"},
        {"01-overview", "Central management of up to two hundred", look(kGreen, 0, true), "admin"},
        {"01-overview", "Readings are also", look(kBlue, 1), "expert"},
        {"01-overview", "Skylark Station is the desktop companion", look(kBlack), "no audience anywhere around"},
        {"01-overview", "Choosing an edition", look(kRed), "title inside a novice topic"},
        {"01-overview", "Up to 200", look(kRed), "table cell inside a novice topic"},
        {"01-overview", "An edition can be changed", look(kBlue, 1), "expert paragraph inside a novice topic"},
        {"01-overview", "Histories older than version 2.0", look(kBlue, 1), "footnote inside an expert paragraph"},
        {"01-overview", "station software", look(kBlack), "audience=\"\" is no value"},
        {"01-overview", "Administrators of several stations", look(kBlue, 1),
         "\"expert admin\": the expert rule comes before the admin rule"},
        {"02-install", "winget install Larkfield.SkylarkStation", look(kBlue, 1),
         "code block, expert by the DTD default, inside a novice topic"},
        {"02-install", "sudo apt install", look(kBlue, 1), "code block, expert by the DTD default"},
        {"02-install", "sudo systemctl enable", look(kRed), "code block marked novice"},
        {"02-install", "Review: the Fedora package", look(kGreen, 0, true), "admin"},
        {"02-install", "If the receiver is not found", look(kRed), "\"expert novice\": the novice rule comes first"},
        {"02-install", "Installing on Windows", look(kRed), "title inside a novice topic"},
        {"03-configure", "Each sensor reports on its own radio channel", look(kRed), "\"novice expert\""},
        {"03-configure", "Channels 7 and 8", look(kRed), "footnote inside a \"novice expert\" paragraph"},
        {"03-configure", "The Fleet console knows three roles", look(kGreen, 0, true), "paragraph inside an admin topic"},
        {"03-configure", "Reset a forgotten password", look(kGreen, 0, true),
         "\"administrator\" matches no rule and keeps the admin topic's look"},
        {"03-configure", "Connect the console", look(kBlue, 1, true),
         "\"admin expert\" inside an admin topic: blue and underlined over the topic's overline"},
        {"03-configure", "skylark-console users import", look(kBlue, 1, true),
         "code block, expert by the DTD default, inside an admin topic"},
        {"03-configure", "Pairing sensors", look(kBlack), "title of a topic with no audience"},
        {"04-release-notes", "New to weather stations?", look(kBlack), "\"beginner\" matches no rule"},
        {"04-release-notes", "The history database moved", look(kBlue, 1), "item of an expert list"},
        {"04-release-notes", "The web address for readings", look(kBlue, 1),
         "audience=\"\" inside an expert list keeps the list's look"},
        {"04-release-notes", "The Fleet console shows a map", look(kGreen, 0, true), "admin"},
    };
    return looks;
}

const std::vector<ExpectedLook>& releaseStatusLooks() {
    static const std::vector<ExpectedLook> looks = {
        {"01-overview", "if you are upgrading.", look(kGreen, 2), "new"},
        {"01-overview", "Meet Skylark Station", look(kBlack), "no status"},
        {"02-install", "winget install Larkfield.SkylarkStation", look(kGreen, 2), "new"},
        {"02-install", "sudo apt install", look(kBlue, 0, false, false, true), "changed"},
        {"02-install", "A Fleet console needs a computer", look(kBlack, 3), "unchanged, with nothing coloured around it"},
        {"03-configure", "Stations not reporting", look(kGreen, 2), "table row marked new"},
        {"03-configure", "role names changed in 3.2", look(kBlue, 0, false, false, true), "changed"},
        {"04-release-notes", "Release notes for version 3.2", look(kBlack), "no status"},
        {"04-release-notes", "What changed since version 3.1", look(kBlue, 0, false, false, true), "changed"},
        {"04-release-notes", "What is new in 3.2", look(kGreen, 2), "title inside a new topic"},
        {"04-release-notes", "Alerts can be paused", look(kGreen, 2), "item inside a new topic"},
        {"04-release-notes", "The Fleet console shows a map", look(kGreen, 2), "item inside a new topic"},
        {"04-release-notes", "The history database moved", look(kBlue, 0, false, false, true),
         "item inside a changed topic"},
        {"04-release-notes", "The Linux service unit is now called", look(kBlue, 0, false, false, true),
         "\"Changed\": case is ignored"},
        {"04-release-notes", "skylark-station.service", look(kBlue, 0, false, false, true),
         "phrase inside a \"Changed\" item"},
        {"04-release-notes", "Sensors and receivers from version 3.0", look(kBlue, 3, false, false, true),
         "unchanged inside a changed topic: keeps blue and the change bar, adds the numeric underline"},
        {"04-release-notes", "Removed features", look(kRed, 0, false, true), "title inside a deleted topic"},
        {"04-release-notes", "Exported files you already have", look(kRed, 0, false, true),
         "footnote inside a deleted topic: the override keeps the walk out"},
        {"04-release-notes", "Windows 8.1 is no longer", look(kRed, 0, false, true), "\"Deleted\" inside a deleted topic"},
        {"04-release-notes", "Known issues", look(kBlack, 3), "title inside an unchanged topic"},
        {"04-release-notes", "Unplug it and plug it in again.", look(kBlack, 3), "table cell inside an unchanged topic"},
        {"04-release-notes", "The station map is empty", look(kGreen, 2),
         "table row marked new inside an unchanged topic: the double underline replaces the numeric one"},
    };
    return looks;
}

std::string savedLookMismatches(const headless::Document& chapter, const std::string& chapterName,
                                const std::vector<ExpectedLook>& looks) {
    std::ostringstream mismatches;
    for (const ExpectedLook& expected : looks) {
        if (chapterName != expected.chapter) continue;
        const headless::Flow* found = nullptr;
        std::uint32_t offset = 0;
        int places = 0;
        for (const headless::Flow& flow : chapter.flows) {
            for (std::size_t at = flow.text.find(expected.text); at != std::string::npos;
                 at = flow.text.find(expected.text, at + 1), ++places) {
                found = &flow;
                offset = static_cast<std::uint32_t>(at);
            }
        }
        if (places != 1) {
            mismatches << "\"" << expected.text << "\" stands " << places << " times in " << chapterName << "\n";
            continue;
        }
        const std::uint32_t end = offset + static_cast<std::uint32_t>(std::string(expected.text).size());
        for (std::uint32_t at = offset; at < end; ++at) {
            Look saved = lookAt(chapter, *found, at);
            if (saved == expected.look) continue;
            mismatches << chapterName << ": \"" << expected.text << "\" (" << expected.why << ") is saved as " << saved
                       << ", expected " << expected.look << "\n";
            break;
        }
    }
    return mismatches.str();
}

}  // namespace voka::test
