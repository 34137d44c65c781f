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

int filterFiles(Session& session, const FilterRequest& request) {
    const std::string file = request.file.empty() ? exampleBook() : request.file;
    const Handle target = session.openFile(file);
    if (target == kNoObject) return kExitBadInput;
    if (cancelRequested()) return kExitCancelled;
    const bool book = objectType(target) == kBookObject;
    if (!book) session.host().setActiveDocument(target);
    const bool duplicate = request.type.empty() ? session.plugin().state().prefs.filterType == kFilterDuplicateFile
                                                : request.type == "duplicate";

    const OutputPlan plan = planOutputs(request.outDir, inputsOf(session, target, file),
                                        duplicate ? OutputKind::Content : OutputKind::Pictures);
    if (!plan.problem.empty()) {
        std::cerr << "voka: " << plan.problem << " (choose another --out)\n";
        return kExitUsage;
    }
    StagingFolder staging;
    if (duplicate && book) {
        std::string problem;
        std::string folderProblem;
        if (!makeFoldersFor(plan.folder, plan.index, folderProblem) || !staging.make(plan.folder, problem)) {
            std::cerr << "voka: " << (folderProblem.empty() ? problem : folderProblem) << "\n";
            return kExitFailed;
        }
        session.allowSavesIn(staging.path());
        session.agent().answerFileChooser(kFolderChooserTitle, staging.path());
    }
    session.agent().addDialogScript(filterChoice(request, duplicate, duplicate && book));

    const int result = runFilterCommand(session, book);
    const int unopened = session.unopenedChapters() ? kExitBadInput : kExitOk;
    if (result != 1) {
        std::cerr << "voka: filtering " << file << " did not complete: "
                  << whyNotFiltered(cancelRequested() ? 108 : result) << "\n";
        return unopened ? unopened : exitCodeOf(cancelRequested() ? 108 : result);
    }
    if (cancelRequested()) return kExitCancelled;
    const Handle filtered = session.plugin().state().filterRun.target;
    if (duplicate && book) {
        if (int code = writeFilteredBook(session, plan, filtered); code != kExitOk) return code;
        return unopened;
    }
    if (duplicate) {
        const std::string& output = plan.documents.front().saved;
        if (int code = writeContentDocument(session, filtered, plan.documents.front().input, plan.folder, output); code != kExitOk) return code;
        warnWhereInvalid(session, filtered, output);
        return unopened;
    }
    for (const DocumentOutputs& outputs : plan.documents) {
        if (cancelRequested()) return kExitCancelled;
        const std::string title = fs::path(outputs.input).filename().string();
        auto rendering = [&](const headless::Document&) { return filterRendering(session, title); };
        if (int code = writeDocumentAndPage(session, outputs, plan.folder, rendering); code != kExitOk) return code;
    }
    if (int code = writeIndexPage(plan, fs::path(file).filename().string()); code != kExitOk) return code;
    return unopened;
}

int restoreFiles(Session& session, const std::string& file, const std::string& outDir) {
    const Handle target = session.openFile(file);
    if (target == kNoObject) return kExitBadInput;
    if (cancelRequested()) return kExitCancelled;
    const bool book = objectType(target) == kBookObject;
    if (!book) session.host().setActiveDocument(target);
    const OutputPlan plan = planOutputs(outDir, inputsOf(session, target, file));
    if (!plan.problem.empty()) {
        std::cerr << "voka: " << plan.problem << " (choose another --out)\n";
        return kExitUsage;
    }
    session.plugin().state().lastCommandResult = 0;
    session.host().invokeCommand(book ? "vkp_RestoreBook" : "vkp_RestoreDoc");
    const int unopened = session.unopenedChapters() ? kExitBadInput : kExitOk;
    if (session.plugin().state().lastCommandResult != 1 || cancelRequested()) {
        std::cerr << "voka: restoring " << file << " did not complete\n";
        return unopened ? unopened : cancelRequested() ? kExitCancelled : kExitFailed;
    }
    if (int code = writePlainPictures(session, plan, fs::path(file).filename().string()); code != kExitOk) return code;
    return unopened;
}

}  // namespace voka::cli
