// Validation findings as voka prints them: one line each in the
// FILE:LINE:COLUMN shape editors and CI annotate, or JSON, SARIF 2.1.0 for
// code-scanning services, or JUnit XML with one test case per file.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace voka::cli {

struct Finding {
    std::string file;  // as printed: relative to the working folder when inside it
    std::uint32_t line = 0, column = 0;  // of the element's start tag; 0 when unknown
    int rule = 0;                        // 1 to 4
    std::string element, attribute, value, message;
};

enum class FindingFormat { Text, Json, Sarif, Junit };

// The rule's name as the report heads it: "Invalid syntax" ...
const char* ruleName(int rule);

// Writes the whole output for `findings`; `files` are every file validated
// (JUnit gives each a test case, clean or not).
void writeFindings(std::ostream& out, FindingFormat format, const std::vector<Finding>& findings,
                   const std::vector<std::string>& files);

}  // namespace voka::cli
