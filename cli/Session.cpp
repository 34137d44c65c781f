#include "cli/Session.h"

#include "cli/Home.h"
#include "host/headless/HostPaths.h"

#include "cli/Signals.h"
#include "coloring/ColoringMessages.h"
#include "filtering/FilterRun.h"

#include <filesystem>
#include <iostream>
#include <unordered_map>
#include <unistd.h>

namespace voka::cli {
namespace {

// The plug-in's notes that only say all went well, which --quiet leaves out.
bool onlyInforms(const std::string& message) {
    return message.ends_with(kBookColoringComplete) || message.ends_with(kFilterComplete) ||
           message.find(" Welcome. Please let us know if you have any problems with the software.") != std::string::npos;
}

}  // namespace

Session::Session(const SessionOptions& options) : options_(options) {}

bool Session::start() {
    bool defaultHomeUsed = options_.home.empty();
    home_ = defaultHomeUsed ? defaultHome() : options_.home;
    if (home_.empty()) {
        std::cerr << "voka: neither XDG_CONFIG_HOME nor HOME is set, so there is no per-user folder: name one with --home DIR\n";
        return false;
    }
    home_ = std::filesystem::absolute(home_).lexically_normal().string();
    if (std::string problem = prepareHome(home_, defaultHomeUsed); !problem.empty())
        std::cerr << "voka: " << problem << "\n";

    installCancelSignals();
    headless::BatchOptions batch = std::move(options_.batch);
    batch.yes = options_.yes;
    batch.cancelRequested = cancelRequested;  // Ctrl-C is Esc, and the user means it
    using Progress = headless::BatchOptions::Progress;
    // Progress is for someone watching: shown on a terminal, in a log only when asked for.
    batch.progress = options_.quiet      ? Progress::None
                     : ::isatty(2) != 0  ? Progress::Terminal
                     : options_.progress ? Progress::Lines
                                         : Progress::None;
    if (options_.quiet) batch.onlyInforms = onlyInforms;
    agent_ = std::make_unique<headless::BatchAgent>(std::cerr, std::move(batch));

    headless::HostConfig config;
    config.sessionDirectory = home_;
    config.valueSeparators = options_.valueSeparators;
    writableFolders_.push_back(home_);
    auto refusal = [this](const std::string& systemPath) -> std::string {
        const std::filesystem::path target = std::filesystem::absolute(systemPath).lexically_normal();
        for (const std::string& folder : writableFolders_) {
            const std::filesystem::path relative = target.lexically_relative(folder);
            if (!relative.empty() && *relative.begin() != ".." && *relative.begin() != ".") return "";
        }
        return "voka lets the plug-in save only its own outputs, not " + systemPath;
    };
    config.dialogDirectory = resourceDirectory() + "/dialogs";
    host_ = std::make_unique<headless::HeadlessHost>(config, *agent_);
    host_->setSaveRefusal(refusal);
    plugin_ = std::make_unique<Plugin>(*host_);
    host_->attachClient(plugin_.get());
    host_->startClient();
    if (!plugin_->started()) {
        std::cerr << "voka: the plug-in did not start in " << home_ << " (see its messages above)\n";
        return false;
    }
    return true;
}

Handle Session::openFile(const std::string& systemPath) {
    std::error_code ec;
    std::filesystem::path absolute = std::filesystem::absolute(systemPath, ec).lexically_normal();
    OpenParams params;
    params.makeVisible = true;
    params.interactive = false;
    Handle object = host_->open(headless::toHostPath(absolute.string()), params);
    if (object == kNoObject) {
        // A file that does not load has said why through the host already.
        if (!std::filesystem::exists(absolute, ec)) std::cerr << "voka: cannot open " << systemPath << ": no such file\n";
        else std::cerr << "voka: cannot open " << systemPath << "\n";
        return kNoObject;
    }
    if (objectType(object) != kBookObject) return object;
    for (Handle component = host_->firstComponent(object); component != kNoObject && !cancelRequested();
         component = host_->nextComponent(object, component)) {
        std::string path = host_->componentPath(object, component);
        if (host_->open(path, params) != kNoObject) continue;
        ++unopenedChapters_;
        std::error_code missing;
        std::cerr << "voka: cannot open the book's chapter " << headless::toDisplayText(path)
                  << (std::filesystem::exists(headless::toSystemPath(path), missing) ? "" : ": no such file") << "\n";
    }
    host_->setActiveBook(object);
    return object;
}

void Session::allowSavesIn(const std::string& systemFolder) {
    writableFolders_.push_back(std::filesystem::absolute(systemFolder).lexically_normal().string());
}

std::vector<Handle> Session::bookDocuments(Handle book) {
    std::unordered_map<std::string, Handle> open;
    for (Handle doc = host_->firstOpenDocument(); doc != kNoObject; doc = host_->nextOpenDocument(doc))
        open.try_emplace(headless::normalHostPath(host_->path(doc)), doc);
    std::vector<Handle> documents;
    for (Handle component = host_->firstComponent(book); component != kNoObject;
         component = host_->nextComponent(book, component)) {
        const auto found = open.find(headless::normalHostPath(host_->componentPath(book, component)));
        if (found != open.end()) documents.push_back(found->second);
    }
    return documents;
}

}  // namespace voka::cli
