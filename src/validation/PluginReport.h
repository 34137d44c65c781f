// The plugin report: a document made from the report template in the
// per-user folder and saved as the report file, to which a validation run
// appends one element per entry (a heading, a message, a link back to the
// element at fault). While no report is open, writing an entry does nothing.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

// Entry codes. Codes 2 to 9 are the heading and the message of rules 1 to 4
// (2 * rule and 2 * rule + 1); codes 11 to 16 show their three texts.
enum ReportEntry : int {
    kEntryEmptyLine = 1,
    kEntryClickHere = 10,
    kEntryHeading1 = 11,
    kEntryHeading1Link = 12,
    kEntryHeading2 = 13,
    kEntryHeading2Link = 14,
    kEntryMessage = 15,
    kEntryLinkMessage = 16,
    kEntryShortDate = 17,
    kEntryLongDate = 18,
};
inline constexpr int ruleHeadingEntry(int rule) { return 2 * rule; }
inline constexpr int ruleMessageEntry(int rule) { return 2 * rule + 1; }

// Opens the template and saves it as the report, which becomes state.report.
// False, after telling the user, when either fails.
bool OpenPluginReport(Host& host, PluginState& state);

// Appends an entry to the report. With `link` 1 the entry starts with a
// hypertext marker to `element` of `doc`, or to the first page of `doc` (a
// document or a book) when no element is given. Rule messages take the
// attribute as `text1` and the offending value as `text2`.
void WriteReportEntry(Host& host, PluginState& state, int code, Handle doc, Handle element, int link,
                      const std::string& text1 = "", const std::string& text2 = "", const std::string& text3 = "");

// Closes the report without saving and forgets it.
void ClosePluginReport(Host& host, PluginState& state);

// The message of rule entry `code` (3, 5, 7 or 9) about `element`; "" for other codes.
std::string reportRuleMessage(Host& host, int code, Handle doc, Handle element, const std::string& attribute,
                              const std::string& value);

// "n" for a tag that starts with a vowel (any case), else "": "a" + article.
std::string articleFor(const std::string& tag);

}  // namespace voka
