#include "cli/Commands.h"

#include "cli/Home.h"
#include "cli/HtmlRendering.h"
#include "host/headless/HostPaths.h"
#include "host/headless/persist/Persist.h"

#include <filesystem>
#include <fstream>
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

int exitCodeOf(int result) {
    if (result == 1) return kExitOk;
    if (result == 108) return kExitCancelled;
    return kExitFailed;
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

Rendering renderingFor(Session& session, const headless::Document& doc, const std::string& title) {
    const PluginState& state = session.plugin().state();
    Rendering rendering;
    rendering.title = title;
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
    return rendering;
}

bool writeFile(const fs::path& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary);
    out << content;
    out.close();
    if (!out) std::cerr << "voka: cannot write " << path.string() << "\n";
    return static_cast<bool>(out);
}

// Saves the document in the host's full form and its HTML picture into `dir`.
bool writeOutputs(Session& session, Handle doc, const fs::path& dir, std::vector<std::string>& pages) {
    headless::Document* model = session.host().mutableDocument(doc);
    if (!model) return false;
    std::string name = headless::fileNameOf(session.host().path(doc));
    std::string stem = fs::path(name).stem().string();
    if (stem.empty()) stem = "untitled";

    headless::SaveResult saved =
        headless::saveDocument(*model, (dir / (stem + ".voka.xml")).string(), headless::SaveForm::Full);
    if (!saved.ok) {
        std::cerr << "voka: " << saved.error << "\n";
        return false;
    }
    model->applyCuts();  // the rendering reads element offsets directly
    std::string page = stem + ".html";
    std::ofstream html(dir / page, std::ios::binary);
    if (!html || !renderHtml(*model, renderingFor(session, *model, name), html)) {
        std::cerr << "voka: cannot write " << (dir / page).string() << "\n";
        return false;
    }
    pages.push_back(page);
    std::cout << (dir / (stem + ".voka.xml")).string() << "\n" << (dir / page).string() << "\n";
    return true;
}

std::string indexPage(const std::vector<std::string>& pages, const std::string& title) {
    std::string html = "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" + title +
                       "</title></head><body>\n<h1>" + title + "</h1>\n<ul>\n";
    for (const std::string& page : pages) html += "<li><a href=\"" + page + "\">" + page + "</a></li>\n";
    html += "</ul>\n</body></html>\n";
    return html;
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
    session.plugin().state().lastCommandResult = 1;
    session.host().invokeCommand(tag);
    return exitCodeOf(session.plugin().state().lastCommandResult);
}

int colorFiles(Session& session, const ColorRequest& request) {
    std::string file = request.file.empty() ? exampleBook() : request.file;
    Handle target = session.openFile(file);
    if (target == kNoObject) return kExitBadInput;
    bool book = objectType(target) == kBookObject;
    if (!book) session.host().setActiveDocument(target);

    const char* command = request.uncolor ? (book ? "vkp_UnColorBook" : "vkp_UnColorDoc")
                                          : (book ? "vkp_ColorBook" : "vkp_ColorDoc");
    session.plugin().state().lastCommandResult = 0;
    session.host().invokeCommand(command);
    int result = session.plugin().state().lastCommandResult;
    if (result != 1) {
        std::cerr << "voka: " << (request.uncolor ? "uncoloring" : "coloring") << " " << file
                  << " did not complete (result " << result << ")\n";
        return exitCodeOf(result);
    }

    std::error_code ec;
    fs::path dir = request.outDir;
    fs::create_directories(dir, ec);
    if (!fs::is_directory(dir, ec)) {
        std::cerr << "voka: cannot create the output folder " << dir.string() << "\n";
        return kExitFailed;
    }
    std::vector<Handle> documents = book ? session.bookDocuments(target) : std::vector<Handle>{target};
    std::vector<std::string> pages;
    for (Handle doc : documents)
        if (!writeOutputs(session, doc, dir, pages)) return kExitFailed;
    std::string title = fs::path(file).filename().string();
    if (!writeFile(dir / "index.html", indexPage(pages, title))) return kExitFailed;
    std::cout << (dir / "index.html").string() << "\n";
    return kExitOk;
}

int showInfo(Session& session, const std::vector<std::string>& files) {
    int code = kExitOk;
    for (const std::string& file : files) {
        Handle object = session.openFile(file);
        if (object == kNoObject) {
            code = kExitBadInput;
            continue;
        }
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
