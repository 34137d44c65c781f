#include "cli/Commands.h"

#include "cli/DocumentWriting.h"
#include "cli/Home.h"
#include "cli/SchemeChoice.h"
#include "coloring/ColoringCommands.h"
#include "host/headless/Handles.h"
#include "schemes/RuleMatching.h"
#include "cli/Signals.h"
#include "host/headless/HostPaths.h"
#include "host/headless/persist/Persist.h"
#include "plugin/CommandTable.h"

#include <filesystem>
#include <iostream>

namespace voka::cli {
namespace fs = std::filesystem;
using headless::MenuItem;

namespace {

void printMenu(const MenuItem& item, int depth) {
    std::string indent(static_cast<std::size_t>(depth) * 2, ' ');
    switch (item.kind) {
    case MenuItem::Kind::Menu:
        std::cout << indent << item.label << "  (" << item.tag << ")\n";
        for (const MenuItem& child : item.items) printMenu(child, depth + 1);
        return;
    case MenuItem::Kind::Command:
        std::cout << indent << item.label << "  [" << item.number << " " << item.tag;
        if (!item.shortcut.empty()) std::cout << ", " << item.shortcut;
        std::cout << "]\n";
        return;
    case MenuItem::Kind::Separator:
        std::cout << indent << "----  (" << item.tag << ")\n";
        return;
    }
}

// The value of a key of the preferences ("DefaultColoringScheme"), read from
// the shared settings document as the plug-in reads it; "" when it cannot be.
std::string preference(Session& session, const std::string& key) {
    const std::string& path = session.plugin().state().paths.sharedSettings;
    headless::LoadResult loaded = headless::loadFile(headless::toSystemPath(path));
    if (!loaded.document) return "";
    const headless::Document& doc = *loaded.document;
    for (headless::Index e = 0; e < doc.elements.size(); ++e) {
        const headless::Index definition = doc.elements[e].definition;
        if (definition >= doc.definitions.size() || doc.definitions[definition].tag != "SettingsGroupE") continue;
        const auto position = doc.definitions[definition].attributeIndex.find(key);
        if (position == doc.definitions[definition].attributeIndex.end()) return "";
        const std::vector<std::string>& values = doc.values.get(doc.attributeValues(e, position->second));
        return values.empty() ? "" : values.front();
    }
    return "";
}

// Why a colouring command did not complete, in a sentence that says what to do.
std::string whyNotDone(Session& session, int result) {
    const std::string settings = headless::toDisplayText(session.plugin().state().paths.sharedSettings);
    switch (result) {
    case 0:
        return "nothing was done (the active scheme dialog was cancelled, or the command does not apply to what is open)";
    case 102:
        return "no document or book is open for it";
    case 103:
        return "no element is selected";
    case 104: {
        const std::string category = preference(session, "DefaultCategory");
        const std::string scheme = preference(session, "DefaultColoringScheme");
        return "no coloring scheme is active: the preferences name \"" + scheme + "\" in the category \"" + category +
               "\", which the main settings do not hold. Name one with --category and --scheme, or set "
               "DefaultCategory and DefaultColoringScheme in " + settings;
    }
    case 105:
        return "the document has no structure in its main flow (no highest-level element)";
    case 108:
        return "it was cancelled";
    }
    return "the plug-in ended it with result " + std::to_string(result);
}

std::string conditionsText(const Attributes& conditions, bool matchAll) {
    std::string text;
    for (const Attribute& condition : conditions) {
        if (!text.empty()) text += matchAll ? "; and " : "; or ";
        text += condition.name + " = ";
        for (std::size_t i = 0; i < condition.values.size(); ++i) {
            if (i) text += matchAll ? " and " : ", ";
            text += condition.values[i];
        }
    }
    return text;
}

Rendering coloringRendering(Session& session, Handle docHandle, const headless::Document& doc, const std::string& title) {
    PluginState& state = session.plugin().state();
    Rendering rendering;
    rendering.title = title;
    rendering.legendCaption = "Coloring scheme";
    rendering.schemeName = state.active.category + " / " + state.active.coloringScheme;
    for (const ColorRule& rule : state.coloring.rules) {
        LegendRule entry;
        entry.name = rule.colorName;
        for (const headless::Color& color : doc.colors)
            if (color.name == rule.colorName) entry.rgb = color.rgb;
        entry.style = rule.style;
        entry.override = rule.override == 1;
        entry.matchAll = rule.matchAll == 1;
        entry.conditions = conditionsText(rule.conditions, entry.matchAll);
        rendering.legend.push_back(entry);
    }
    // An element without text shows its rule's look on its tag (a map's topicref, an empty image).
    MatchContext context;
    prepareMatching(state, docHandle, context);
    for (const headless::Element& e : doc.elements) {
        if (!e.alive || e.begin < e.end) continue;
        const Handle element = headless::makeHandle(kElementObject, e.handleId);
        const int rule = findMatchingRuleIn(session.host(), state, context, element, kColorDocument);
        if (rule >= 0) rendering.tagRules[e.unique] = static_cast<std::size_t>(rule);
    }
    return rendering;
}

}  // namespace

std::string exampleBook() { return resourceDirectory() + "/example/book/example.book"; }

int listMenus(Session& session) {
    for (const std::string& name : headless::hostMenuNames()) {
        MenuItem menu = session.host().menu(name);
        std::cout << name << "\n";
        for (const MenuItem& item : menu.items) printMenu(item, 1);
    }
    return kExitOk;
}

int runMenuCommand(Session& session, const std::string& tag, const std::string& file) {
    if (!file.empty() && session.openFile(file) == kNoObject) return kExitBadInput;
    bool known = false;
    for (const headless::CommandInfo& command : session.host().commands()) known = known || command.tag == tag;
    if (!known) {
        std::cerr << "voka: no command " << tag << "; 'voka menus' lists them\n";
        return kExitUsage;
    }
    // The plug-in's book commands act on the active book and would report
    // success on none; with only a document open there is nothing to do.
    static const char* const kBookCommands[] = {"vkp_ColorBook", "vkp_UnColorBook", "vkp_FilterBook",
                                                "vkp_ValidateBook", "vkp_RestoreBook"};
    for (const char* bookCommand : kBookCommands) {
        if (tag != bookCommand || session.host().activeBook() != kNoObject) continue;
        std::cerr << "voka: " << tag << " works on a book, and no book is open"
                  << (file.empty() ? "" : " (" + file + " is a document)") << "\n";
        return kExitFailed;
    }
    for (const CommandEntry& entry : commandTable()) {
        if (entry.tag != tag || entry.handler != nullptr) continue;
        std::cerr << "voka: " << tag << " (" << entry.label << ") is not in this version of the plug-in yet\n";
        return kExitFailed;
    }
    session.plugin().state().lastCommandResult = 1;
    session.host().invokeCommand(tag);
    return exitCodeOf(session.plugin().state().lastCommandResult);
}

int colorFiles(Session& session, const ColorRequest& request) {
    std::vector<Target> targets;
    if (int code = openTargets(session, request.files, targets); code != kExitOk) return code;

    // Checked before any work, so that a refusal costs nothing and changes nothing.
    const OutputPlan plan = planOutputs(request.outDir, inputsOf(session, targets),
                                        request.fullForm ? OutputKind::Pictures : OutputKind::Documents);
    if (!plan.problem.empty()) return refuseOutputs(plan.problem);

    PluginState& state = session.plugin().state();
    if (request.uncolor && (!request.category.empty() || !request.scheme.empty())) {
        state.lastCommandResult = 0;
        session.host().invokeCommand("vkp_SetColorScheme");
        if (state.lastCommandResult != 1) {
            std::cerr << "voka: the coloring scheme asked for could not be made active\n";
            return kExitFailed;
        }
    }
    for (std::size_t t = 0; t < targets.size(); ++t) {
        const Target& target = targets[t];
        const bool book = objectType(target.object) == kBookObject;
        activate(session, target);
        // Each colour command asks for its scheme again; the first answer came with the command line.
        if (t > 0 && !request.uncolor) session.agent().addDialogScript(schemeChoice(request.category, request.scheme));
        const char* command = request.uncolor ? (book ? "vkp_UnColorBook" : "vkp_UnColorDoc")
                                              : (book ? "vkp_ColorBook" : "vkp_ColorDoc");
        state.lastCommandResult = 0;
        session.host().invokeCommand(command);
        const int result = state.lastCommandResult;
        if (result != 1) {
            std::cerr << "voka: " << (request.uncolor ? "uncoloring " : "coloring ") << target.file
                      << " did not complete: " << whyNotDone(session, result) << "\n";
            // A book whose chapters did not all open ends with 4 whatever came after.
            return session.unopenedChapters() ? kExitBadInput : exitCodeOf(result);
        }
    }
    const headless::SaveForm form = request.fullForm ? headless::SaveForm::Full : headless::SaveForm::AsRead;
    for (const DocumentOutputs& outputs : plan.documents) {
        if (cancelRequested()) return kExitCancelled;
        const std::string title = fs::path(outputs.input).filename().string();
        auto rendering = [&](const headless::Document& doc) { return coloringRendering(session, outputs.doc, doc, title); };
        if (int code = writeDocumentAndPage(session, outputs, plan.folder, rendering, form); code != kExitOk) return code;
    }
    if (int code = writeIndexPage(plan, indexTitle(targets, "voka color")); code != kExitOk) return code;
    return session.unopenedChapters() ? kExitBadInput : kExitOk;
}

int showInfo(Session& session, const std::vector<std::string>& files) {
    int code = kExitOk;
    for (const std::string& file : files) {
        Handle object = session.openFile(file);
        if (object == kNoObject) {
            code = kExitBadInput;
            continue;
        }
        if (session.unopenedChapters()) code = kExitBadInput;
        std::vector<Handle> documents{object};
        if (objectType(object) == kBookObject) {
            std::cout << "book " << file << "\n";
            documents = session.bookDocuments(object);
        }
        for (Handle doc : documents) {
            const headless::Document* model = session.host().document(doc);
            if (!model) continue;
            std::cout << "document " << headless::toDisplayText(session.host().path(doc)) << " ("
                      << (model->contentForm ? "content form" : "full form") << ", "
                      << model->definitions.size() << " element definitions)\n";
            std::vector<std::size_t> elements(model->flows.size(), 0);
            for (const headless::Element& e : model->elements)
                if (e.alive && e.flow < elements.size()) ++elements[e.flow];
            for (std::size_t i = 0; i < model->flows.size(); ++i) {
                const headless::Flow& flow = model->flows[i];
                std::cout << "  flow " << (flow.name.empty() ? "(unnamed)" : flow.name)
                          << (flow.main ? " (main)" : "") << ": " << elements[i] << " elements, "
                          << flow.text.size() << " bytes of text\n";
            }
        }
    }
    return code;
}

}  // namespace voka::cli
