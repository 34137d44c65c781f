// What plain XML cannot carry in the content form (added colours, condition
// formats, the show-all flag, marker types, element properties, conditions
// on table rows and text, character formats, markers, cross-references) is
// written as `<?voka-... ?>` processing instructions after the root element
// and read back by the loader. docs/file-formats.md lists them.
#pragma once

#include "host/headless/Model.h"
#include "host/headless/persist/Records.h"
#include "host/headless/persist/XmlOut.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace voka::headless {

// An element the instructions name, by its number in the written file's
// pre-order (the root is 0), which is its index once the file is read back.
struct NumberedElement {
    std::uint32_t number;
    Index element;
};

// The main flow of a document: the one marked main, else the first.
Index mainFlowOf(const Document& doc);

void writeContentExtras(XmlOut& out, const Document& doc, const std::vector<NumberedElement>& numbered);

bool isContentExtra(std::string_view target);

class ContentExtrasReader {
public:
    explicit ContentExtrasReader(Document& doc);
    // False with the reason when the instruction cannot be applied.
    bool apply(std::string_view target, std::string_view data, std::string& problem);

private:
    Document& doc_;
    NameCache names_;
};

}  // namespace voka::headless
