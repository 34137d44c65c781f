// One run of voka: a headless host on the per-user folder, the plug-in
// started in it exactly as FrameMaker would start it, and the documents and
// books the command line names.
#pragma once

#include "host/headless/BatchAgent.h"
#include "host/headless/HeadlessHost.h"
#include "plugin/Plugin.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace voka::cli {

// Exit codes of voka.
enum ExitCode : int {
    kExitOk = 0,
    kExitFailed = 1,      // the plug-in refused or failed the work
    kExitUsage = 2,       // bad command line
    kExitNoStart = 3,     // the plug-in could not start (its messages say why)
    kExitBadInput = 4,    // a file could not be opened
    kExitCancelled = 5,   // cancelled by the user
};

struct SessionOptions {
    std::string home;       // "" for the default
    bool yes = false;       // answer Yes to questions
    bool quiet = false;     // errors, warnings and questions only
    bool progress = false;  // progress lines even when standard error is not a terminal
    headless::BatchOptions batch;  // answers and dialog scripts
    headless::ValueSeparators valueSeparators;  // --value-separator
};

class Session {
public:
    explicit Session(const SessionOptions& options);

    // Prepares the per-user folder and starts the plug-in. False when it did
    // not start; the reasons were printed.
    bool start();

    // Opens a document or a book (a system path); for a book also every
    // component. Returns the handle, or 0 after printing why.
    Handle openFile(const std::string& systemPath);
    std::vector<Handle> bookDocuments(Handle book);
    // Chapters of the books opened that could not be opened.
    int unopenedChapters() const { return unopenedChapters_; }
    // The plug-in saves only in the per-user folder and in folders allowed
    // here; elsewhere its saves fail (an unchanged file saved in place
    // succeeds without being written), so none of the user's files is
    // ever written by it.
    void allowSavesIn(const std::string& systemFolder);

    // The places a DTD was copied to (or found in place) in this run.
    std::set<std::string>& dtdPlaces() { return dtdPlaces_; }

    headless::HeadlessHost& host() { return *host_; }
    headless::BatchAgent& agent() { return *agent_; }
    Plugin& plugin() { return *plugin_; }

private:
    SessionOptions options_;
    std::string home_;
    std::unique_ptr<headless::BatchAgent> agent_;
    std::unique_ptr<headless::HeadlessHost> host_;
    std::unique_ptr<Plugin> plugin_;
    int unopenedChapters_ = 0;
    std::vector<std::string> writableFolders_;
    std::set<std::string> dtdPlaces_;
};

}  // namespace voka::cli
