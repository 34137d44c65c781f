// Writing what a command made, under the rules of Outputs.h: each document's
// full form and HTML picture, the index page, a document in its own
// vocabulary, a book file.
#pragma once

#include "cli/HtmlRendering.h"
#include "cli/Outputs.h"
#include "cli/Session.h"
#include "host/headless/persist/Persist.h"

#include <functional>
#include <string>
#include <vector>

namespace voka::cli {

// The exit code of a plug-in command's result (1 done, 108 cancelled).
int exitCodeOf(int result);


// Every file a run on `target` reads, the documents among them, for planning outputs.
std::vector<PlannedInput> inputsOf(Session& session, Handle target, const std::string& file);

// A file the command line names, open: a document or a book.
struct Target {
    std::string file;
    Handle object = kNoObject;
};
// Opens each file (the bundled example book when there are none), in turn.
// An exit code: 4 when one does not open, 5 when cancelled.
int openTargets(Session& session, const std::vector<std::string>& files, std::vector<Target>& targets);
// The inputs of every target, each document once however many name it.
std::vector<PlannedInput> inputsOf(Session& session, const std::vector<Target>& targets);
// Makes the target active for the plug-in's next command.
void activate(Session& session, const Target& target);

// Says why the planned outputs may not be written; exit code 2.
int refuseOutputs(const std::string& problem);
// The index page's title: the one file's name, or the command's for several.
std::string indexTitle(const std::vector<Target>& targets, const std::string& command);

// Saves the document (in the host's full form, or in the form it was read
// in) and writes its HTML picture, made by `rendering` from the model; prints
// each path written. An exit code.
using RenderingOf = std::function<Rendering(const headless::Document&)>;
int writeDocumentAndPage(Session& session, const DocumentOutputs& outputs, const std::string& outputFolder,
                         const RenderingOf& rendering, headless::SaveForm form = headless::SaveForm::Full);

// The index page linking every document's picture. An exit code.
int writeIndexPage(const OutputPlan& plan, const std::string& title);
// The list of links to every document's picture, as the index page has it.
void appendPictureLinks(std::string& html, const OutputPlan& plan);
// A picture without a legend, titled with the input's file name.
RenderingOf plainPicture(const DocumentOutputs& outputs);
// Each document's full form and plain picture, then the index page. An exit code.
int writePlainPictures(Session& session, const OutputPlan& plan, const std::string& indexTitle);

// Saves the document in the vocabulary it was read in, marked with
// kContentOutputMark, at `path`, and beside it the DTD that lay beside
// `input`; prints each path written. An exit code.
int writeContentDocument(Session& session, Handle doc, const std::string& input, const std::string& outputFolder,
                         const std::string& path);

// Writes a book file listing `chapters` (system paths) at `path`. An exit code.
int writeBookFile(const std::vector<std::string>& chapters, const std::string& outputFolder, const std::string& path);

}  // namespace voka::cli
