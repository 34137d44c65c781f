#include "cli/ValidateCommand.h"

#include "cli/Commands.h"
#include "cli/DocumentWriting.h"
#include "cli/SchemeChoice.h"
#include "cli/Signals.h"
#include "cli/SourcePositions.h"
#include "host/headless/Handles.h"
#include "host/headless/HostPaths.h"
#include "host/headless/persist/Persist.h"

#include <filesystem>
#include <functional>
#include <iostream>
#include <map>

namespace voka::cli {
namespace fs = std::filesystem;

namespace {

// A finding as the plug-in found it, before its position is known.
struct Located {
    Finding finding;
    Handle doc = kNoObject;
    std::uint32_t unique = 0;    // of the element, for the page's anchor
    std::uint32_t tagEnd = 0;    // where its start tag ends in the file
};

// How a path is printed: relative to the working folder when inside it.
std::string shownPath(const std::string& systemPath) {
    std::error_code ec;
    const fs::path here = fs::current_path(ec);
    const fs::path relative = fs::path(systemPath).lexically_relative(here);
    if (!ec && !relative.empty() && *relative.begin() != "..") return relative.string();
    return systemPath;
}

Located locate(Session& session, ValidationFinding& found) {
    Located located;
    located.doc = found.doc;
    Finding& f = located.finding;
    f.rule = found.rule;
    f.attribute = std::move(found.attribute);
    f.value = std::move(found.value);
    f.message = std::move(found.message);
    const headless::Document* model = session.host().document(found.doc);
    const headless::Index i = headless::handleIndex(found.element, kElementObject);
    if (!model || i == headless::kNil || i >= model->elements.size()) return located;
    const headless::Element& e = model->elements[i];
    if (e.definition < model->definitions.size()) f.element = model->definitions[e.definition].tag;
    located.unique = e.unique;
    if (i < model->sourceTagEnds.size()) located.tagEnd = model->sourceTagEnds[i];
    return located;
}

// Files, lines and columns, reading each validated file once.
void placeFindings(Session& session, std::vector<Located>& findings) {
    std::map<Handle, std::vector<std::size_t>> byDocument;
    for (std::size_t i = 0; i < findings.size(); ++i) byDocument[findings[i].doc].push_back(i);
    for (const auto& [doc, indexes] : byDocument) {
        const std::string path = headless::toSystemPath(session.host().path(doc));
        const std::string shown = shownPath(path);
        std::vector<std::uint32_t> ends;
        for (std::size_t i : indexes) ends.push_back(findings[i].tagEnd);
        const std::vector<SourcePosition> positions = startTagPositions(path, ends);
        for (std::size_t k = 0; k < indexes.size(); ++k) {
            findings[indexes[k]].finding.file = shown;
            findings[indexes[k]].finding.line = positions[k].line;
            findings[indexes[k]].finding.column = positions[k].column;
        }
    }
}

std::string noteOf(const Finding& f) {
    std::string note = "rule " + std::to_string(f.rule) + ": " + f.attribute;
    if (!f.value.empty()) note += " = \"" + f.value + "\"";
    return note;
}

// The report page: every finding with a link to its element in the document's picture,
// handed to `sink` a piece at a time.
bool reportPage(const OutputPlan& plan, const std::vector<Located>& findings, const std::string& scheme,
                const std::map<Handle, std::string>& pages, const std::function<bool(std::string_view)>& sink) {
    std::string html;
    appendPageHead(html, "Validation report");
    html += "<style>body{font-family:sans-serif;margin:2em}table{border-collapse:collapse}"
            "td,th{border:1px solid #ccc;padding:.2em .6em;text-align:left;vertical-align:top}</style>"
            "</head><body>\n<h1>Validation report</h1>\n<p>Validation scheme: ";
    appendHtmlEscaped(html, scheme);
    html += "</p>\n<p>" + std::to_string(findings.size()) + (findings.size() == 1 ? " finding" : " findings") + "</p>\n";
    if (!findings.empty()) {
        html += "<table>\n<tr><th>File</th><th>Line</th><th>Rule</th><th>Element</th><th>Attribute</th><th>Value</th>"
                "<th>Message</th></tr>\n";
        for (const Located& l : findings) {
            if (html.size() > (1 << 20)) {
                if (!sink(html)) return false;
                html.clear();
            }
            const Finding& f = l.finding;
            html += "<tr><td>";
            const auto page = pages.find(l.doc);
            if (page != pages.end()) {
                const std::string relative = fs::path(page->second).lexically_relative(plan.folder).generic_string();
                html += "<a class=\"finding\" href=\"" + urlEncodedPath(relative) + "#el-" + std::to_string(l.unique) + "\">";
                appendHtmlEscaped(html, f.file);
                html += "</a>";
            } else {
                appendHtmlEscaped(html, f.file);
            }
            html += "</td><td>" + std::to_string(f.line) + ":" + std::to_string(f.column) + "</td><td>" +
                    std::to_string(f.rule) + " ";
            appendHtmlEscaped(html, ruleName(f.rule));
            html += "</td><td>&lt;";
            appendHtmlEscaped(html, f.element);
            html += "&gt;</td><td>";
            appendHtmlEscaped(html, f.attribute);
            html += "</td><td>";
            appendHtmlEscaped(html, f.value);
            html += "</td><td>";
            appendHtmlEscaped(html, f.message);
            html += "</td></tr>\n";
        }
        html += "</table>\n";
    }
    html += "<h2>Files</h2>\n";
    appendPictureLinks(html, plan);
    html += "</body></html>\n";
    return sink(html);
}

// The report the plug-in left open (it closes a clean one), saved in full form and closed.
int keepReport(Session& session, const OutputPlan& plan, const std::string& path) {
    const std::string reportPath = headless::normalHostPath(session.plugin().state().paths.report);
    for (Handle doc = session.host().firstOpenDocument(); doc != kNoObject; doc = session.host().nextOpenDocument(doc)) {
        if (headless::normalHostPath(session.host().path(doc)) != reportPath) continue;
        std::string problem;
        if (!makeFoldersFor(plan.folder, path, problem)) {
            std::cerr << "voka: " << problem << "\n";
            return kExitFailed;
        }
        const headless::Document* model = session.host().document(doc);
        const headless::SaveResult saved =
            model ? headless::saveDocument(*model, path, headless::SaveForm::Full) : headless::SaveResult{};
        // The next command saves a fresh report at the same place: this one goes.
        session.host().close(doc, kCloseModified);
        if (!saved.ok) {
            std::cerr << "voka: " << (saved.error.empty() ? "cannot write " + path : saved.error) << "\n";
            return kExitFailed;
        }
        return kExitOk;
    }
    return kExitOk;
}

}  // namespace

int validateFiles(Session& session, const ValidateRequest& request) {
    std::vector<Target> targets;
    if (int code = openTargets(session, request.files, targets); code != kExitOk) return code;
    const std::vector<PlannedInput> inputs = inputsOf(session, targets);
    const OutputPlan plan = planOutputs(request.outDir, inputs, OutputKind::Report, static_cast<int>(targets.size()));
    if (!plan.problem.empty()) return refuseOutputs(plan.problem);

    PluginState& state = session.plugin().state();
    if (!request.category.empty() || !request.scheme.empty()) {
        session.agent().addDialogScript(schemeChoice(request.category, request.scheme));
        state.lastCommandResult = 0;
        session.host().invokeCommand("vkp_SetValScheme");
        if (state.lastCommandResult != 1) {
            std::cerr << "voka: the validation scheme asked for could not be made active\n";
            return kExitFailed;
        }
    }

    std::vector<Located> findings;
    std::vector<std::string> files;
    for (std::size_t t = 0; t < targets.size(); ++t) {
        const Target& target = targets[t];
        const bool book = objectType(target.object) == kBookObject;
        activate(session, target);
        // The active scheme dialog comes first when the preferences ask for it: OK keeps the scheme.
        session.agent().addDialogScript(schemeChoice("", ""));
        state.lastCommandResult = 0;
        session.host().invokeCommand(book ? "vkp_ValidateBook" : "vkp_ValidateDoc");
        if (cancelRequested()) return kExitCancelled;
        if (state.lastCommandResult != 1) {
            std::cerr << "voka: validating " << target.file << " did not complete (the messages above say why)\n";
            return session.unopenedChapters() ? kExitBadInput : kExitFailed;
        }
        for (ValidationFinding& found : state.validationFindings) findings.push_back(locate(session, found));
        state.validationFindings.clear();
        if (int code = keepReport(session, plan, plan.reports[t]); code != kExitOk) return code;
        for (Handle doc : book ? session.bookDocuments(target.object) : std::vector<Handle>{target.object})
            files.push_back(shownPath(headless::toSystemPath(session.host().path(doc))));
    }
    placeFindings(session, findings);

    std::map<Handle, std::string> pages;
    for (const DocumentOutputs& outputs : plan.documents) {
        if (cancelRequested()) return kExitCancelled;
        headless::Document* model = session.host().mutableDocument(outputs.doc);
        if (!model) continue;
        model->applyCuts();
        Rendering rendering;
        rendering.title = fs::path(outputs.input).filename().string();
        for (const Located& l : findings) {
            if (l.doc != outputs.doc || l.unique == 0) continue;
            std::string& note = rendering.notes[l.unique];
            note += (note.empty() ? "" : "; ") + noteOf(l.finding);
        }
        std::string problem;
        if (!makeFoldersFor(plan.folder, outputs.page, problem) ||
            !writeAtomically(outputs.page, [&](const auto& sink) { return renderHtml(*model, rendering, sink); }, problem)) {
            std::cerr << "voka: " << (problem.empty() ? "cannot write " + outputs.page : problem) << "\n";
            return kExitFailed;
        }
        pages[outputs.doc] = outputs.page;
    }
    std::string problem;
    auto report = [&](const auto& sink) { return reportPage(plan, findings, state.active.validationScheme, pages, sink); };
    if (!writeAtomically(plan.index, report, problem)) {
        std::cerr << "voka: " << problem << "\n";
        return kExitFailed;
    }
    std::cerr << "voka: report written to " << plan.index << "\n";

    std::vector<Finding> printed;
    printed.reserve(findings.size());
    for (Located& l : findings) printed.push_back(std::move(l.finding));
    findings.clear();
    writeFindings(std::cout, request.format, printed, files);
    if (session.unopenedChapters()) return kExitBadInput;
    return printed.empty() ? kExitOk : kExitFailed;
}

}  // namespace voka::cli
