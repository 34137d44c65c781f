#include "cli/DocumentWriting.h"

#include "cli/Commands.h"
#include "cli/LocalDtd.h"
#include "cli/Signals.h"
#include "host/headless/HostPaths.h"
#include "host/headless/persist/Persist.h"

#include <filesystem>
#include <future>
#include <iostream>
#include <set>
#include <thread>

namespace voka::cli {
namespace fs = std::filesystem;

namespace {

int failed(const std::string& problem) {
    std::cerr << "voka: " << problem << "\n";
    return kExitFailed;
}

// A document in its own vocabulary takes along the DTD that lay beside it.
int writeLocalDtd(Session& session, const headless::Document& model, const std::string& input, const std::string& output,
                  const std::string& outputFolder) {
    std::vector<std::string> written;
    std::string problem;
    if (!copyLocalDtd(model.contentProlog, input, output, outputFolder, session.dtdPlaces(), written, problem))
        return failed(problem);
    for (const std::string& path : written) std::cout << path << "\n";
    return kExitOk;
}

// The mark goes first in the prolog, after the XML declaration, where a look at a file's head finds it.
void markAsOutput(std::string& prolog) {
    const std::string mark = std::string(kContentOutputMark) + "\n";
    if (prolog.find(kContentOutputMark) != std::string::npos) return;
    if (prolog.empty()) prolog = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    std::size_t at = prolog.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    if (prolog.compare(at, 5, "<?xml") == 0) {
        const std::size_t end = prolog.find("?>", at);
        if (end == std::string::npos) return;
        at = end + 2;
        if (at < prolog.size() && prolog[at] == '\n') ++at;
        else prolog.insert(at++, "\n");
    }
    prolog.insert(at, mark);
}

}  // namespace

int exitCodeOf(int result) {
    if (result == 1) return kExitOk;
    if (result == 108) return kExitCancelled;
    return kExitFailed;
}

std::vector<PlannedInput> inputsOf(Session& session, Handle target, const std::string& file) {
    std::vector<PlannedInput> inputs;
    const bool book = objectType(target) == kBookObject;
    // A book read from a DITA map or an XInclude document is written as a voka book, under a name that says so.
    if (book) {
        const headless::Book* model = session.host().book(target);
        const bool ownFile = !model || model->source == headless::BookSource::VokaBook;
        inputs.push_back({kNoObject, file, ownFile ? std::string() : fs::path(file).stem().string() + ".book"});
    }
    for (Handle doc : book ? session.bookDocuments(target) : std::vector<Handle>{target})
        inputs.push_back({doc, headless::toSystemPath(session.host().path(doc)), ""});
    return inputs;
}

int openTargets(Session& session, const std::vector<std::string>& files, std::vector<Target>& targets) {
    for (const std::string& file : files.empty() ? std::vector<std::string>{exampleBook()} : files) {
        const Handle object = session.openFile(file);
        if (object == kNoObject) return kExitBadInput;
        targets.push_back({file, object});
        if (cancelRequested()) return kExitCancelled;
    }
    return kExitOk;
}

std::vector<PlannedInput> inputsOf(Session& session, const std::vector<Target>& targets) {
    std::vector<PlannedInput> inputs;
    std::set<std::string> seen;
    for (const Target& target : targets)
        for (PlannedInput& input : inputsOf(session, target.object, target.file))
            if (seen.insert(fs::absolute(input.path).lexically_normal().string()).second) inputs.push_back(std::move(input));
    return inputs;
}

int refuseOutputs(const std::string& problem) {
    std::cerr << "voka: " << problem << " (choose another --out)\n";
    return kExitUsage;
}

std::string indexTitle(const std::vector<Target>& targets, const std::string& command) {
    return targets.size() == 1 ? fs::path(targets.front().file).filename().string() : command;
}

void activate(Session& session, const Target& target) {
    if (objectType(target.object) == kBookObject) session.host().setActiveBook(target.object);
    else session.host().setActiveDocument(target.object);
}

// The document and its page are written at once, the page on a thread of its own: both only
// read the model, so on two cores the longer of them sets the time. The page
// takes its name only once the document is saved.
int writeDocumentAndPage(Session& session, const DocumentOutputs& outputs, const std::string& outputFolder,
                         const RenderingOf& renderingOf, headless::SaveForm form) {
    headless::Document* model = session.host().mutableDocument(outputs.doc);
    if (!model) return kExitFailed;
    std::string problem;
    if (!makeFoldersFor(outputFolder, outputs.saved, problem)) return failed(problem);
    if (cancelRequested()) return kExitCancelled;
    model->applyCuts();  // the rendering reads element offsets directly
    if (form == headless::SaveForm::AsRead && model->contentForm) markAsOutput(model->contentProlog);
    const Rendering rendering = renderingOf(*model);
    std::promise<bool> savedPromise;
    std::shared_future<bool> savedResult = savedPromise.get_future().share();
    std::string pageProblem;
    bool written = false;
    auto writePage = [&] {
        written = writeAtomically(
            outputs.page,
            [&](const std::function<bool(std::string_view)>& sink) {
                return renderHtml(*model, rendering, [&](std::string_view piece) { return !cancelRequested() && sink(piece); });
            },
            pageProblem, [&] { return savedResult.get(); });
    };
    std::thread page;
    try {
        page = std::thread(writePage);
    } catch (const std::system_error&) {
        // No thread to be had: the page is written after the save instead.
    }
    const headless::SaveResult saved = headless::saveDocument(*model, outputs.saved, form);
    savedPromise.set_value(saved.ok);
    if (page.joinable()) page.join();
    else writePage();
    if (!saved.ok) return failed(saved.error);
    std::cout << outputs.saved << "\n";
    if (form == headless::SaveForm::AsRead && model->contentForm)
        if (int code = writeLocalDtd(session, *model, outputs.input, outputs.saved, outputFolder); code != kExitOk) return code;
    if (cancelRequested()) return kExitCancelled;
    if (!written) return failed(pageProblem.empty() ? "cannot write " + outputs.page : pageProblem);
    std::cout << outputs.page << "\n";
    return kExitOk;
}

int writeIndexPage(const OutputPlan& plan, const std::string& title) {
    std::string html;
    appendPageHead(html, title);
    html += "</head><body>\n<h1>";
    appendHtmlEscaped(html, title);
    html += "</h1>\n";
    appendPictureLinks(html, plan);
    html += "</body></html>\n";
    std::string problem;
    if (cancelRequested()) return kExitCancelled;
    if (!writeAtomically(plan.index, [&](const auto& sink) { return sink(html); }, problem)) return failed(problem);
    std::cout << plan.index << "\n";
    return kExitOk;
}

void appendPictureLinks(std::string& html, const OutputPlan& plan) {
    html += "<ul>\n";
    for (const DocumentOutputs& outputs : plan.documents) {
        const std::string relative = fs::path(outputs.page).lexically_relative(plan.folder).generic_string();
        html += "<li><a href=\"" + urlEncodedPath(relative) + "\">";
        appendHtmlEscaped(html, relative);
        html += "</a></li>\n";
    }
    html += "</ul>\n";
}

RenderingOf plainPicture(const DocumentOutputs& outputs) {
    const std::string title = fs::path(outputs.input).filename().string();
    return [title](const headless::Document&) {
        Rendering plain;
        plain.title = title;
        return plain;
    };
}

int writePlainPictures(Session& session, const OutputPlan& plan, const std::string& indexTitle) {
    for (const DocumentOutputs& outputs : plan.documents) {
        if (cancelRequested()) return kExitCancelled;
        if (int code = writeDocumentAndPage(session, outputs, plan.folder, plainPicture(outputs)); code != kExitOk)
            return code;
    }
    return writeIndexPage(plan, indexTitle);
}

int writeContentDocument(Session& session, Handle doc, const std::string& input, const std::string& outputFolder,
                         const std::string& path) {
    headless::Document* model = session.host().mutableDocument(doc);
    if (!model) return failed("the filtered document of " + path + " is not open");
    std::string problem;
    if (!makeFoldersFor(outputFolder, path, problem)) return failed(problem);
    if (cancelRequested()) return kExitCancelled;
    markAsOutput(model->contentProlog);
    const headless::SaveResult saved = headless::saveDocument(*model, path, headless::SaveForm::AsRead);
    if (!saved.ok) return failed(saved.error);
    std::cout << path << "\n";
    return model->contentForm ? writeLocalDtd(session, *model, input, path, outputFolder) : kExitOk;
}

int writeBookFile(const std::vector<std::string>& chapters, const std::string& outputFolder, const std::string& path) {
    headless::Book book;
    for (const std::string& chapter : chapters) book.components.push_back(headless::BookComponent{chapter, "", 0, true});
    std::string problem;
    if (!makeFoldersFor(outputFolder, path, problem)) return failed(problem);
    if (cancelRequested()) return kExitCancelled;
    const headless::SaveResult saved = headless::saveBook(book, path);
    if (!saved.ok) return failed(saved.error);
    std::cout << path << "\n";
    return kExitOk;
}

}  // namespace voka::cli
