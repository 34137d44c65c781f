#include "host/headless/persist/Persist.h"

namespace voka::headless {

// CALS, HTML and DITA simple tables, footnotes and cross-references. Both a
// CALS `table` and its `tgroup` are tables: a title belongs to the first, the
// body and rows to the second. DocBook's `informaltable` is a table without a
// title, holding a CALS `tgroup` or HTML rows.
const ElementKindTable& defaultElementKinds() {
    static const ElementKindTable kinds = {
        {"table", kElementTable},          {"tgroup", kElementTable},       {"simpletable", kElementTable},
        {"informaltable", kElementTable},
        {"title", kElementTableTitle},     {"caption", kElementTableTitle}, {"thead", kElementTableHeading},
        {"sthead", kElementTableHeading},  {"tbody", kElementTableBody},    {"tfoot", kElementTableFooting},
        {"row", kElementTableRow},         {"tr", kElementTableRow},        {"strow", kElementTableRow},
        {"entry", kElementTableCell},      {"td", kElementTableCell},       {"th", kElementTableCell},
        {"stentry", kElementTableCell},    {"fn", kElementFootnote},        {"footnote", kElementFootnote},
        {"xref", kElementXRef},            {"link", kElementXRef},
    };
    return kinds;
}

}  // namespace voka::headless
