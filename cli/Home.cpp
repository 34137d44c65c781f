#include "cli/Home.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#ifndef VOKA_RESOURCE_DIR
#define VOKA_RESOURCE_DIR "resources"
#endif

namespace voka::cli {
namespace fs = std::filesystem;

std::string defaultHome() {
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg) return (fs::path(xdg) / "voka").string();
    if (const char* home = std::getenv("HOME"); home && *home) return (fs::path(home) / ".config" / "voka").string();
    return "";  // nowhere to keep settings: the caller asks for --home rather than writing into the working folder
}

std::string resourceDirectory() {
    if (const char* dir = std::getenv("VOKA_RESOURCES"); dir && *dir) return dir;
    // An installed voka finds its files beside it, in ../share/voka; a built one in the source tree.
    std::error_code ec;
    const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (!ec) {
        const fs::path installed = exe.parent_path().parent_path() / "share" / "voka";
        if (fs::is_directory(installed / "dialogs", ec)) return installed.string();
    }
    return VOKA_RESOURCE_DIR;
}

std::string prepareHome(const std::string& home, bool createIfMissing) {
    std::error_code ec;
    if (!fs::is_directory(home, ec)) {
        if (!createIfMissing) return "the folder " + home + " does not exist";
        fs::create_directories(home, ec);
        if (ec) return "cannot create " + home + ": " + ec.message();
    }
    fs::path brindel = fs::path(home) / "Brindel";
    if (fs::exists(brindel, ec)) {
        // A folder whose shared settings were never made (a first start that
        // could not save them) gets the shipped file again, as a reinstall would.
        if (!fs::exists(brindel / "BR_Settings.fm", ec) && !fs::exists(brindel / "BR_Settings_TEMPVOKA.fm", ec))
            fs::copy_file(resourceDirectory() + "/BR_Settings.fm", brindel / "BR_Settings_TEMPVOKA.fm", ec);
        return "";
    }
    if (!fs::create_directory(brindel, ec) || ec) return "cannot write into " + home + ": " + ec.message();

    // What an installation leaves: the shipped shared settings under the
    // scratch name the plug-in merges from, the report template, and the
    // example main settings as the local copy the shipped preferences name.
    fs::path resources = resourceDirectory();
    struct Copy { fs::path from; const char* to; };
    const Copy copies[] = {
        {resources / "BR_Settings.fm", "BR_Settings_TEMPVOKA.fm"},
        {resources / "BR_Plugin_Report_Template.fm", "BR_Plugin_Report_Template.fm"},
        {resources / "example" / "VOKA_MainSettings.fm", "VOKA_MainSettings_LocalCopy.fm"},
    };
    for (const Copy& copy : copies) {
        fs::copy_file(copy.from, brindel / copy.to, fs::copy_options::skip_existing, ec);
        if (ec) {
            std::string reason = "cannot install " + copy.from.string() + " into " + brindel.string() + ": " + ec.message();
            fs::remove_all(brindel, ec);  // the next run tries the whole installation again
            return reason;
        }
    }
    return "";
}

}  // namespace voka::cli
