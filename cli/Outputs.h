// Where voka writes what it made, and how. Pictures: every output lies under
// the output folder at its input's path relative to the inputs' common
// folder, under a name no other output of the run takes (`ch.html` and
// `ch.voka.xml`, or `ch.dita.html` ... when two inputs share a stem); the
// book's index is `index.html`, which no document's outputs are called.
// Content: each document under its own file name directly in the output
// folder, beside the book file, as a duplicate book's chapters lie.
// Nothing is written over an input, over a file voka did not write, or
// through a symbolic link; every file is written atomically.
#pragma once

#include "host/Host.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace voka::cli {

enum class OutputKind {
    Pictures,  // the full form and an HTML picture of each document, and an index page
    Documents, // each document in the form it was read in under its own name, its picture, and an index page
    Content,   // each document in its own vocabulary, and the book file
    Report,    // each document's HTML picture, the report page as index, and the report documents
};

struct DocumentOutputs {
    Handle doc = kNoObject;
    std::string input;  // the document's file
    std::string saved;  // the full-form copy, or the document in its own form
    std::string page;   // its HTML picture; "" for content
};

struct OutputPlan {
    std::string folder;
    std::vector<DocumentOutputs> documents;
    std::string index;    // the index page, or the book file; "" for one content document
    std::vector<std::string> reports;  // Report: report.voka.xml, report-2.voka.xml ...
    std::string problem;  // why nothing may be written; empty when all is well
};

struct PlannedInput {
    Handle doc = kNoObject;  // kNoObject for a file that only was read (a book file)
    std::string path;        // system path
    std::string outputName;  // of what is written for it, when not the input's own file name
};

// Plans the outputs of `inputs` in `folder` and checks that they may be written.
OutputPlan planOutputs(const std::string& folder, const std::vector<PlannedInput>& inputs,
                       OutputKind kind = OutputKind::Pictures, int reports = 0);

// The comment a content-form output ends with, by which voka knows a file it may replace.
extern const char* const kContentOutputMark;

// Makes the folders between the output folder and `path`; false and a reason
// when one cannot be made or is a symbolic link.
bool makeFoldersFor(const std::string& outputFolder, const std::string& path, std::string& problem);

// Writes a file atomically from what `write` hands its sink; `write` returns
// false (or the sink fails) to abandon it, leaving nothing behind. With
// `keep`, the file written in full takes its name only if keep() says so.
using ContentWriter = std::function<bool(const std::function<bool(std::string_view)>& sink)>;
bool writeAtomically(const std::string& path, const ContentWriter& write, std::string& problem,
                     const std::function<bool()>& keep = nullptr);

}  // namespace voka::cli
