#include "cli/FilterCommands.h"

#include "cli/Commands.h"
#include "cli/DocumentWriting.h"
#include "cli/Signals.h"
#include "filtering/FilterDialog.h"
#include "filtering/FilterRun.h"
#include "host/headless/ContentModel.h"
#include "host/headless/HostPaths.h"

#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <iostream>

namespace voka::cli {
namespace fs = std::filesystem;
using headless::DialogAction;

namespace {

constexpr const char* kFolderChooserTitle = "Select the folder for the filtered book";

headless::DialogScript filterChoice(const FilterRequest& request, bool duplicate, bool browse) {
    headless::DialogScript script;
    script.dialog = "vkp_Dialog_Filter";
    if (!request.category.empty()) script.actions.push_back({DialogAction::Kind::ChooseLabel, kCategoryPopup, request.category, 0});
    if (!request.scheme.empty()) script.actions.push_back({DialogAction::Kind::ChooseLabel, kSchemePopup, request.scheme, 0});
    script.actions.push_back({DialogAction::Kind::Choose, duplicate ? kDuplicateRadio : kSourceRadio, "", 1});
    if (request.removeColoring) script.actions.push_back({DialogAction::Kind::Choose, kRemoveColoringBox, "", 1});
    if (browse) script.actions.push_back({DialogAction::Kind::Press, kBrowseButton, "", 0});
    script.actions.push_back({DialogAction::Kind::Press, kOkButton, "", 0});
    return script;
}

std::string whyNotFiltered(int result) {
    switch (result) {
    case 0:
        return "nothing was filtered (the filter dialog was cancelled, or the run stopped: the messages above say why)";
    case kFilterRunCopyFailed:
        return "the duplicate could not be made";
    case kFilterRunSameFolder:
        return "the destination is the book's own folder";
    case 108:
        return "it was cancelled";
    }
    return "the plug-in ended it with result " + std::to_string(result);
}

// Values of a filter rule as the legend shows them.
std::string valuesText(const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values) text += (text.empty() ? "" : ", ") + value;
    return text;
}

Rendering filterRendering(Session& session, const std::string& title) {
    const PluginState& state = session.plugin().state();
    Rendering rendering;
    rendering.title = title;
    rendering.legendCaption = "Filter scheme";
    rendering.schemeName = state.active.category + " / " + state.active.filterScheme;
    for (const FilterRule& rule : state.filter.rules) rendering.filterLegend.push_back({rule.attribute, valuesText(rule.values)});
    return rendering;
}

// The folder the plug-in moves a duplicate book into before it is filtered:
// inside the output folder, so that the files move into place by renaming,
// and gone when the run ends, however it ends.
class StagingFolder {
public:
    ~StagingFolder() {
        std::error_code ec;
        if (!path_.empty()) fs::remove_all(path_, ec);
    }
    // The output folder is there: the caller made it.
    bool make(const std::string& outputFolder, std::string& problem) {
        std::string pattern = (fs::path(outputFolder) / ".voka-filter-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            problem = "cannot make a folder in " + outputFolder + " for the filtered book";
            return false;
        }
        path_ = pattern;
        return true;
    }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

// A DTD may require a child the filter deleted (a topic's title, the rows of
// a heading): such a file is written all the same, and named.
void warnWhereInvalid(Session& session, Handle doc, const std::string& output) {
    const headless::Document* model = session.host().document(doc);
    if (!model) return;
    std::map<std::string, int> byTag;
    for (const std::uint32_t element : headless::brokenByDeletions(*model))
        ++byTag[model->definitions[model->elements[element].definition].tag];
    if (byTag.empty()) return;
    std::string list;
    for (const auto& [tag, count] : byTag)
        list += (list.empty() ? "" : ", ") + ("<" + tag + ">") + (count > 1 ? " (" + std::to_string(count) + ")" : "");
    std::cerr << "voka: warning: " << output << " is not valid against its DTD: the filter deleted children that "
              << list << " must have\n";
}

int runFilterCommand(Session& session, bool book) {
    session.plugin().state().lastCommandResult = 0;
    session.host().invokeCommand(book ? "vkp_FilterBook" : "vkp_FilterDoc");
    return session.plugin().state().lastCommandResult;
}

// The filtered book's chapters, written where the plan puts their originals, and the book file listing them.
int writeFilteredBook(Session& session, const OutputPlan& plan, Handle book) {
    std::vector<std::string> chapters;
    for (Handle doc : session.bookDocuments(book)) {
        if (cancelRequested()) return kExitCancelled;
        const DocumentOutputs* place = nullptr;
        for (const DocumentOutputs& outputs : plan.documents)
            if (outputs.doc == doc) place = &outputs;
        if (!place) {
            std::cerr << "voka: the filtered book holds a chapter voka did not plan for: "
                      << headless::toDisplayText(session.host().path(doc)) << "\n";
            return kExitFailed;
        }
        if (int code = writeContentDocument(session, doc, place->input, plan.folder, place->saved); code != kExitOk) return code;
        warnWhereInvalid(session, doc, place->saved);
        chapters.push_back(place->saved);
    }
    return writeBookFile(chapters, plan.folder, plan.index);
}

}  // namespace

namespace {

// One document or book through a duplicate filter, its outputs as `plan` says.
int filterDuplicate(Session& session, const FilterRequest& request, const Target& target, const OutputPlan& plan) {
    const bool book = objectType(target.object) == kBookObject;
    activate(session, target);
    StagingFolder staging;
    if (book) {
        std::string problem;
        std::string folderProblem;
        if (!makeFoldersFor(plan.folder, plan.index, folderProblem) || !staging.make(plan.folder, problem)) {
            std::cerr << "voka: " << (folderProblem.empty() ? problem : folderProblem) << "\n";
            return kExitFailed;
        }
        session.allowSavesIn(staging.path());
        session.agent().answerFileChooser(kFolderChooserTitle, staging.path());
    }
    session.agent().addDialogScript(filterChoice(request, true, book));
    const int result = runFilterCommand(session, book);
    if (result != 1) {
        std::cerr << "voka: filtering " << target.file << " did not complete: "
                  << whyNotFiltered(cancelRequested() ? 108 : result) << "\n";
        return session.unopenedChapters() ? kExitBadInput : exitCodeOf(cancelRequested() ? 108 : result);
    }
    if (cancelRequested()) return kExitCancelled;
    const Handle filtered = session.plugin().state().filterRun.target;
    if (book) return writeFilteredBook(session, plan, filtered);
    const DocumentOutputs& output = plan.documents.front();
    if (int code = writeContentDocument(session, filtered, output.input, plan.folder, output.saved); code != kExitOk)
        return code;
    warnWhereInvalid(session, filtered, output.saved);
    return kExitOk;
}

}  // namespace

int filterFiles(Session& session, const FilterRequest& request) {
    std::vector<Target> targets;
    if (int code = openTargets(session, request.files, targets); code != kExitOk) return code;
    const bool duplicate = request.type.empty() ? session.plugin().state().prefs.filterType == kFilterDuplicateFile
                                                : request.type == "duplicate";
    if (duplicate) {
        // Each file keeps its outputs side by side in --out: planned all at once, so that none takes another's place.
        std::vector<OutputPlan> plans;
        std::set<std::string> places;
        for (const Target& target : targets) {
            plans.push_back(planOutputs(request.outDir, inputsOf(session, target.object, target.file), OutputKind::Content));
            const OutputPlan& plan = plans.back();
            if (!plan.problem.empty()) return refuseOutputs(plan.problem);
            std::vector<std::string> written{plan.index};
            for (const DocumentOutputs& outputs : plan.documents) written.push_back(outputs.saved);
            for (const std::string& place : written)
                if (!place.empty() && !places.insert(place).second)
                    return refuseOutputs("two of the files given would both write " + place);
        }
        for (std::size_t t = 0; t < targets.size(); ++t)
            if (int code = filterDuplicate(session, request, targets[t], plans[t]); code != kExitOk) return code;
        return session.unopenedChapters() ? kExitBadInput : kExitOk;
    }

    const OutputPlan plan = planOutputs(request.outDir, inputsOf(session, targets), OutputKind::Pictures);
    if (!plan.problem.empty()) return refuseOutputs(plan.problem);
    for (const Target& target : targets) {
        activate(session, target);
        session.agent().addDialogScript(filterChoice(request, false, false));
        const int result = runFilterCommand(session, objectType(target.object) == kBookObject);
        if (result != 1) {
            std::cerr << "voka: filtering " << target.file << " did not complete: "
                      << whyNotFiltered(cancelRequested() ? 108 : result) << "\n";
            return session.unopenedChapters() ? kExitBadInput : exitCodeOf(cancelRequested() ? 108 : result);
        }
    }
    for (const DocumentOutputs& outputs : plan.documents) {
        if (cancelRequested()) return kExitCancelled;
        const std::string title = fs::path(outputs.input).filename().string();
        auto rendering = [&](const headless::Document&) { return filterRendering(session, title); };
        if (int code = writeDocumentAndPage(session, outputs, plan.folder, rendering); code != kExitOk) return code;
    }
    if (int code = writeIndexPage(plan, indexTitle(targets, "voka filter")); code != kExitOk) return code;
    return session.unopenedChapters() ? kExitBadInput : kExitOk;
}

int restoreFiles(Session& session, const std::vector<std::string>& files, const std::string& outDir) {
    std::vector<Target> targets;
    if (int code = openTargets(session, files, targets); code != kExitOk) return code;
    const OutputPlan plan = planOutputs(outDir, inputsOf(session, targets));
    if (!plan.problem.empty()) return refuseOutputs(plan.problem);
    for (const Target& target : targets) {
        activate(session, target);
        session.plugin().state().lastCommandResult = 0;
        session.host().invokeCommand(objectType(target.object) == kBookObject ? "vkp_RestoreBook" : "vkp_RestoreDoc");
        if (session.plugin().state().lastCommandResult != 1 || cancelRequested()) {
            std::cerr << "voka: restoring " << target.file << " did not complete\n";
            return session.unopenedChapters() ? kExitBadInput : cancelRequested() ? kExitCancelled : kExitFailed;
        }
    }
    if (int code = writePlainPictures(session, plan, indexTitle(targets, "voka restore")); code != kExitOk) return code;
    return session.unopenedChapters() ? kExitBadInput : kExitOk;
}

}  // namespace voka::cli
