// A document written in its own vocabulary names its DTD as its input did.
// A DTD that lay beside the input (a relative system identifier within its
// folder) is copied beside the output, so that the output is read, and
// validates, as its input was; a DTD found through a catalog needs nothing.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace voka::cli {

// Copies the DTD `prolog`'s DOCTYPE names, relative to `input`, to the same
// place relative to `output`, inside `outputFolder`. Nothing is done when
// the same file is there already; a different file there is left as it is,
// with a warning. `handled` holds the places seen before in this run, which
// are not looked at again (a book's chapters share one DTD). Adds the path
// written to `written`. False and a reason when the copy could not be written.
bool copyLocalDtd(const std::string& prolog, const std::string& input, const std::string& output,
                  const std::string& outputFolder, std::set<std::string>& handled, std::vector<std::string>& written,
                  std::string& problem);

// The system identifier of the DOCTYPE in `prolog`; "" when there is none.
std::string doctypeSystemId(const std::string& prolog);

}  // namespace voka::cli
