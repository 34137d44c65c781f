// Attributes as the plug-in reads settings and scheme matches: an empty value
// is no value in every form; and the shared settings merge, which imports
// newer definitions (values follow their names) and pastes the shipped group.
#include "HostFixture.h"

#include <fstream>
#include <iterator>

namespace voka::headless::testing {
namespace {

struct Doc {
    Handle doc;
    Handle para;
};

Doc paraDoc(HostFixture& f) {
    TreeBuilder b;
    b.define("Para", kElementContainer,
             {AttributeDefinition{"platform", kAttrStrings, 0, {}, {"all"}},
              AttributeDefinition{"audience", kAttrString, 0, {}, {}}, AttributeDefinition{"id", kAttrUniqueId, 0, {}, {}}});
    b.open("Chapter").leaf("Para", {{"audience", "novice"}}, "text").close();
    Doc d;
    d.doc = b.build(f.host, f.folder.hostPath("a.xml"));
    d.para = f.host.firstChild(d.doc, root(f.host, d.doc));
    return d;
}

// In the desktop host an empty attribute value is no value, so `audience=""`
// matches "<no value>" and takes the parent's value; an empty DTD default is
// no default. The file keeps what it said.
TEST(Attributes, AnEmptyValueIsNoValueInEveryForm) {
    HostFixture f;
    f.folder.write("content.xml", "<!DOCTYPE p [<!ATTLIST p audience CDATA '' product CDATA 'pro'>]>\n"
                                  "<p audience=\"\" platform=\"\" otherprops=\"print\">x</p>\n");
    f.folder.write("full.fm", "<voka-document version=\"1\"><flow name=\"A\" main=\"1\"><element tag=\"p\">"
                              "<attribute name=\"audience\"><value></value></attribute>"
                              "<attribute name=\"platform\"><value>win</value><value></value></attribute>"
                              "<text>x</text></element></flow></voka-document>\n");
    const std::pair<const char*, Attributes> cases[] = {
        {"content.xml", {{"audience", {}}, {"product", {}}, {"platform", {}}, {"otherprops", {"print"}}}},
        {"full.fm", {{"audience", {}}, {"platform", {"win"}}}},
    };
    for (const auto& [name, expected] : cases) {
        SCOPED_TRACE(name);
        const Handle doc = f.host.open(f.folder.hostPath(name), OpenParams{});
        ASSERT_NE(doc, kNoObject);
        const Handle p = root(f.host, doc);
        EXPECT_EQ(f.host.attributes(doc, p), expected);
        // The borrowed read the walks use sees the same values, position by position.
        std::vector<std::span<const std::string>> borrowed;
        ASSERT_TRUE(f.host.borrowAttributeValues(doc, p, borrowed));
        ASSERT_EQ(borrowed.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_EQ(std::vector<std::string>(borrowed[i].begin(), borrowed[i].end()), expected[i].values) << i;
        const AttributeDefinitions defs = f.host.attributeDefinitions(doc, f.host.elementDefinition(doc, p));
        for (const AttributeDefinition& def : defs)
            if (def.name == "audience") { EXPECT_EQ(def.defaults, std::vector<std::string>{}) << "an empty default"; }
    }
    const Handle content = f.host.open(f.folder.hostPath("content.xml"), OpenParams{});
    ASSERT_NE(f.host.simpleSave(content, f.folder.hostPath("again.xml"), false), kNoObject);
    std::ifstream again(toSystemPath(f.folder.hostPath("again.xml")));
    const std::string saved((std::istreambuf_iterator<char>(again)), std::istreambuf_iterator<char>());
    EXPECT_NE(saved.find("<p audience=\"\" platform=\"\" otherprops=\"print\">"), std::string::npos) << saved;
}

TEST(Attributes, ValuesFollowTheirNamesWhenDefinitionsChange) {
    HostFixture f;
    Doc d = paraDoc(f);
    ASSERT_TRUE(f.host.setAttributes(d.doc, d.para, {{"platform", {"win"}}, {"audience", {"novice"}}, {"id", {"p1"}}}));
    // A newer definition drops "platform" and puts "id" first.
    TreeBuilder newer;
    newer.define("Para", kElementContainer,
                 {AttributeDefinition{"id", kAttrUniqueId, 0, {}, {}}, AttributeDefinition{"audience", kAttrString, 0, {}, {}},
                  AttributeDefinition{"status", kAttrString, 0, {}, {"draft"}}});
    newer.leaf("Para");
    EXPECT_EQ(f.host.importElementDefinitions(d.doc, newer.build(f.host, f.folder.hostPath("edd.xml")), 0), 0);
    EXPECT_EQ(f.host.attributes(d.doc, d.para), (Attributes{{"id", {"p1"}}, {"audience", {"novice"}}, {"status", {}}}));
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
