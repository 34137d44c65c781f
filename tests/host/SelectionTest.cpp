// Selections and the clipboard, as the settings merge, the colouring of a
// selection and the filter use them.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

TEST(Selection, ElementAndTextSelectionsAgree) {
    HostFixture f;
    Chapter c = chapter(f);
    const Handle flow = f.host.mainFlow(c.doc);
    struct Case {
        const char* name;
        ElementRange elements;
        TextRange text;  // offsets in the flow: Intro [0,5), Hello [5,10), World [10,15)
        std::string selected;
        bool fromText;  // set the text selection, else the element selection
    };
    const Case cases[] = {
        {"one element", {{c.chapter, c.first, 0}, {c.chapter, c.second, 0}}, {{flow, 5}, {flow, 10}}, "Hello", true},
        {"the highest-level element",
         {{kNoObject, c.chapter, 0}, {kNoObject, kNoObject, 0}},
         {{flow, 0}, {flow, 15}},
         "IntroHelloWorld",
         false},
        {"an insertion point", {{c.first, kNoObject, 2}, {c.first, kNoObject, 2}}, {{flow, 7}, {flow, 7}}, "", true},
        {"text inside a paragraph", {{c.first, kNoObject, 1}, {c.first, kNoObject, 3}}, {{c.first, 1}, {c.first, 3}}, "el",
         true},
        {"across two paragraphs", {{c.chapter, c.first, 0}, {c.chapter, kNoObject, 0}}, {{flow, 7}, {flow, 12}}, "lloWo",
         true},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        if (k.fromText) {
            ASSERT_TRUE(f.host.setTextSelection(c.doc, k.text));
            EXPECT_EQ(f.host.textSelection(c.doc), k.text);
        } else {
            ASSERT_TRUE(f.host.setElementSelection(c.doc, k.elements));
        }
        EXPECT_EQ(f.host.elementSelection(c.doc), k.elements);
        EXPECT_EQ(f.host.text(c.doc, f.host.textSelection(c.doc)), k.selected);
    }
    // A selection of deleted text is no selection.
    ASSERT_TRUE(f.host.setTextSelection(c.doc, {{c.second, 0}, {c.second, 2}}));
    ASSERT_TRUE(f.host.deleteObject(c.doc, c.second));
    f.host.clearError();
    EXPECT_EQ(f.host.textSelection(c.doc), TextRange{});
    EXPECT_EQ(f.host.elementSelection(c.doc), ElementRange{});
    EXPECT_EQ(f.host.errorNumber(), kErrorNone);
}

TEST(Selection, ClearDeletesWhatIsSelected) {
    HostFixture f;
    Chapter c = chapter(f);
    ASSERT_TRUE(f.host.setElementSelection(c.doc, {{c.chapter, c.first, 0}, {c.chapter, c.second, 0}}));
    ASSERT_TRUE(f.host.clearSelection(c.doc));
    EXPECT_EQ(children(f.host, c.doc, c.chapter), (std::vector<Handle>{c.title, c.second}));
    ASSERT_TRUE(f.host.setTextSelection(c.doc, {{c.second, 1}, {c.second, 4}}));
    ASSERT_TRUE(f.host.clearSelection(c.doc));
    EXPECT_EQ(elementText(f.host, c.doc, c.chapter), "IntroWd");
    EXPECT_FALSE(f.host.clearSelection(c.doc));  // nothing selected any more
}

// The shared settings merge: the shipped group replaces the user's, and
// definitions the user's document lacks come along.
TEST(Clipboard, PasteReplacesTheSelectedElement) {
    HostFixture f;
    TreeBuilder shipped;
    shipped.define("Group", kElementContainer,
                   {AttributeDefinition{"Version", kAttrInteger, 0, {}, {}}, AttributeDefinition{"Name", kAttrString, 0, {}, {}}});
    shipped.open("Settings").open("Group", {{"Version", "2"}, {"Name", "new"}});
    shipped.leaf("Extra", {{"Key", "k"}}, "extra text").close().close();
    const Handle source = shipped.build(f.host, f.folder.hostPath("shipped.xml"));
    const Handle sourceGroup = f.host.firstChild(source, root(f.host, source));

    TreeBuilder user;
    user.define("Group", kElementContainer,
                {AttributeDefinition{"Name", kAttrString, 0, {}, {}}, AttributeDefinition{"Version", kAttrInteger, 0, {}, {}}});
    user.open("Settings").leaf("Group", {{"Version", "1"}, {"Name", "old"}}, "old text").leaf("Other", {}, "other");
    const Handle target = user.build(f.host, f.folder.hostPath("user.xml"));
    const Handle settings = root(f.host, target);
    const Handle oldGroup = f.host.firstChild(target, settings);
    const Handle other = f.host.lastChild(target, settings);

    ASSERT_TRUE(f.host.setElementSelection(source, {{root(f.host, source), sourceGroup, 0}, {root(f.host, source), kNoObject, 0}}));
    ASSERT_TRUE(f.host.copySelection(source));
    ASSERT_TRUE(f.host.setElementSelection(target, {{settings, oldGroup, 0}, {settings, other, 0}}));
    ASSERT_TRUE(f.host.paste(target));

    const auto kids = children(f.host, target, settings);
    ASSERT_EQ(kids.size(), 2u);
    EXPECT_EQ(kids[1], other);
    EXPECT_EQ(f.host.parent(target, oldGroup), kNoObject);  // the old group is gone
    // Values go by name into the user's definition, which has its own order.
    EXPECT_EQ(f.host.attributes(target, kids[0]), (Attributes{{"Name", {"new"}}, {"Version", {"2"}}}));
    const Handle extra = f.host.firstChild(target, kids[0]);
    EXPECT_EQ(f.host.definitionTag(target, f.host.elementDefinition(target, extra)), "Extra");
    EXPECT_EQ(f.host.attributes(target, extra), (Attributes{{"Key", {"k"}}}));
    EXPECT_EQ(elementText(f.host, target, settings), "extra textother");
    EXPECT_EQ(elementText(f.host, target, other), "other");
    EXPECT_TRUE(f.host.isModified(target));
    // The source is as it was.
    EXPECT_EQ(elementText(f.host, source, root(f.host, source)), "extra text");
}

}  // namespace
}  // namespace voka::headless::testing
