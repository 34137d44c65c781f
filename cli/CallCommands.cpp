#include "cli/CallCommands.h"

#include "cli/Commands.h"
#include "cli/DocumentWriting.h"
#include "cli/Signals.h"
#include "cli/SourcePositions.h"
#include "host/headless/Handles.h"
#include "host/headless/HostPaths.h"

#include <filesystem>
#include <algorithm>
#include <iostream>

namespace voka::cli {
namespace fs = std::filesystem;

namespace {

// The documents a call changed and that have a file, pictured as voka color writes them.
int writeChanged(Session& session, const CallRequest& request) {
    std::vector<PlannedInput> inputs;
    for (Handle doc = session.host().firstOpenDocument(); doc != kNoObject; doc = session.host().nextOpenDocument(doc)) {
        if (!session.host().isModified(doc)) continue;
        const std::string path = session.host().path(doc);
        if (path.empty()) {
            std::cerr << "voka: " << session.host().title(doc) << " is untitled and is not written\n";
            continue;
        }
        inputs.push_back({doc, headless::toSystemPath(path), ""});
    }
    if (inputs.empty()) return kExitOk;
    const OutputPlan plan = planOutputs(request.outDir, inputs);
    if (!plan.problem.empty()) return refuseOutputs(plan.problem);
    return writePlainPictures(session, plan, "voka call");
}

void printIds(Session& session, Handle doc) {
    const headless::Document* model = session.host().document(doc);
    if (!model) return;
    const std::string path = headless::toSystemPath(session.host().path(doc));
    std::cout << "document " << doc << " " << path << "\n";
    // Document order with a stack of our own, and each element's place as child numbers from the root.
    struct Open {
        headless::Index element;
        std::string place;
    };
    std::vector<Open> order;
    for (const headless::Flow& flow : model->flows) {
        std::vector<Open> stack;
        int rootNumber = 0;
        for (headless::Index r = flow.root; r != headless::kNil; r = model->elements[r].nextSibling)
            if (model->elements[r].alive) stack.push_back({r, "/" + std::to_string(++rootNumber)});
        std::reverse(stack.begin(), stack.end());
        while (!stack.empty()) {
            Open top = std::move(stack.back());
            stack.pop_back();
            std::vector<Open> children;
            int number = 0;
            for (headless::Index c = model->elements[top.element].firstChild; c != headless::kNil;
                 c = model->elements[c].nextSibling)
                if (model->elements[c].alive) children.push_back({c, top.place + "/" + std::to_string(++number)});
            for (auto it = children.rbegin(); it != children.rend(); ++it) stack.push_back(std::move(*it));
            order.push_back(std::move(top));
        }
    }
    std::vector<std::uint32_t> ends;
    for (const Open& o : order) ends.push_back(o.element < model->sourceTagEnds.size() ? model->sourceTagEnds[o.element] : 0);
    const std::vector<SourcePosition> positions = startTagPositions(path, ends);
    for (std::size_t i = 0; i < order.size(); ++i) {
        const headless::Element& e = model->elements[order[i].element];
        std::cout << headless::makeHandle(kElementObject, e.handleId) << "\t"
                  << (e.definition < model->definitions.size() ? model->definitions[e.definition].tag : "") << "\t"
                  << positions[i].line << ":" << positions[i].column << "\t" << order[i].place << "\n";
    }
}

}  // namespace

int callPlugin(Session& session, const CallRequest& request) {
    for (const std::string& file : request.open) {
        const Handle object = session.openFile(file);
        if (object == kNoObject) return kExitBadInput;
        if (objectType(object) != kBookObject) session.host().setActiveDocument(object);
    }
    if (!request.delimiter.empty()) session.plugin().state().prefs.externalCallDelimiter = request.delimiter;
    auto send = [&](const std::string& message) {
        const int result = session.host().callClientFromOutside(message);
        std::cout << result << std::endl;
    };
    for (const std::string& message : request.messages) {
        if (cancelRequested()) return kExitCancelled;
        if (message != "-") {
            send(message);
            continue;
        }
        for (std::string line; std::getline(std::cin, line);) {
            if (cancelRequested()) return kExitCancelled;
            if (!line.empty() && line.back() == '\r') line.pop_back();
            // Blank lines and lines starting with # are a script's spacing and comments.
            if (line.empty() || line.front() == '#') continue;
            send(line);
        }
    }
    if (request.outDir.empty()) return session.unopenedChapters() ? kExitBadInput : kExitOk;
    if (int code = writeChanged(session, request); code != kExitOk) return code;
    return session.unopenedChapters() ? kExitBadInput : kExitOk;
}

int showIds(Session& session, const std::string& file) {
    const Handle object = session.openFile(file);
    if (object == kNoObject) return kExitBadInput;
    if (objectType(object) == kBookObject) {
        std::cout << "book " << object << " " << file << "\n";
        for (Handle doc : session.bookDocuments(object)) printIds(session, doc);
    } else {
        printIds(session, object);
    }
    return session.unopenedChapters() ? kExitBadInput : kExitOk;
}

}  // namespace voka::cli
