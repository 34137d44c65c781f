// What a DTD lets an element hold, as the loader keeps it: after deletions,
// the elements whose children no longer fit are found, and only those.
#include "TestFiles.h"
#include "host/headless/ContentModel.h"
#include "host/headless/Editing.h"

namespace voka::test {
namespace {

constexpr const char* kDtd =
    "<!DOCTYPE chapter [\n"
    "  <!ELEMENT chapter (title, shortdesc?, (p | table)+, section*)>\n"
    "  <!ELEMENT section (title, p*)>\n"
    "  <!ELEMENT title (#PCDATA)>\n"
    "  <!ELEMENT shortdesc (#PCDATA)>\n"
    "  <!ELEMENT p (#PCDATA | b)*>\n"
    "  <!ELEMENT b (#PCDATA)>\n"
    "  <!ELEMENT table (tgroup)>\n"
    "  <!ELEMENT tgroup (thead?, tbody)>\n"
    "  <!ELEMENT thead (row+)>\n"
    "  <!ELEMENT tbody (row+)>\n"
    "  <!ELEMENT row (entry+)>\n"
    "  <!ELEMENT entry (#PCDATA)>\n"
    "  <!ELEMENT free ANY>\n"
    "]>\n";

constexpr const char* kBody =
    "<chapter><title>T</title><shortdesc>S</shortdesc><p>one <b>b</b></p><p>two</p>"
    "<table><tgroup><thead><row><entry>h</entry></row></thead>"
    "<tbody><row><entry>a</entry></row><row><entry>b</entry></row></tbody></tgroup></table>"
    "<section><title>U</title><p>three</p></section></chapter>\n";

// The nth element (0 = the root) with `tag`, in document order.
Index nth(const Document& doc, const std::string& tag, int n = 0) {
    for (Index i = 0; i < doc.elements.size(); ++i)
        if (doc.definitions[doc.elements[i].definition].tag == tag && n-- == 0) return i;
    return kNil;
}

TEST(ContentModel, DeletionsThatBreakTheDtdAreFound) {
    struct Case {
        const char* name;
        std::vector<std::pair<const char*, int>> deleted;  // tag and its position among those of the tag
        std::vector<std::string> broken;                   // tags, in document order
    } cases[] = {
        {"an optional child", {{"shortdesc", 0}}, {}},
        {"one of several required", {{"p", 0}}, {}},
        {"all of several required", {{"p", 0}, {"p", 1}, {"table", 0}}, {"chapter"}},
        {"a required first child", {{"title", 0}}, {"chapter"}},
        {"a required child of a nested element", {{"title", 1}}, {"section"}},
        {"inline in mixed content", {{"b", 0}}, {}},
        {"one row of two", {{"row", 1}}, {}},
        {"the only row of a heading", {{"row", 0}}, {"thead"}},
        {"the heading that is optional", {{"thead", 0}}, {}},
        {"the body", {{"tbody", 0}}, {"tgroup"}},
        {"both rows of the body", {{"row", 1}, {"row", 2}}, {"tbody"}},
        {"a whole subtree", {{"table", 0}, {"section", 0}}, {}},
    };
    ScratchFolder folder;
    const std::string path = folder.write("c.xml", std::string("<?xml version=\"1.0\"?>\n") + kDtd + kBody);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LoadResult loaded = loadFile(path);
        ASSERT_TRUE(loaded.document) << loaded.error;
        Document& doc = *loaded.document;
        ASSERT_TRUE(brokenByDeletions(doc).empty()) << "the input is valid";
        std::vector<Index> targets;
        for (const auto& [tag, n] : c.deleted) targets.push_back(nth(doc, tag, n));
        for (Index target : targets) {
            ASSERT_NE(target, kNil);
            cutElement(doc, target);
        }
        std::vector<std::string> broken;
        for (const std::uint32_t e : brokenByDeletions(doc)) broken.push_back(doc.definitions[doc.elements[e].definition].tag);
        EXPECT_EQ(broken, c.broken);
    }
}

}  // namespace
}  // namespace voka::test
