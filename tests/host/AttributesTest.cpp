// Attributes as the plug-in reads and writes settings and scheme matches:
// every declared attribute in declaration order, defaults kept apart, writes
// limited to what the definition declares.
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

TEST(Attributes, EveryDeclaredAttributeInDeclarationOrder) {
    HostFixture f;
    Doc d = paraDoc(f);
    // An unset attribute is listed without values; its default is the definition's.
    EXPECT_EQ(f.host.attributes(d.doc, d.para), (Attributes{{"platform", {}}, {"audience", {"novice"}}, {"id", {}}}));
    const AttributeDefinitions defs = f.host.attributeDefinitions(d.doc, f.host.elementDefinition(d.doc, d.para));
    ASSERT_EQ(defs.size(), 3u);
    EXPECT_EQ(defs[0].defaults, std::vector<std::string>{"all"});
    // Undeclared tags get their attributes in first-seen order.
    TreeBuilder b;
    b.open("Root").leaf("Item", {{"b", "1"}}).leaf("Item", {{"a", "2"}, {"b", "3"}}).close();
    const Handle plain = b.build(f.host, f.folder.hostPath("b.xml"));
    EXPECT_EQ(f.host.attributes(plain, f.host.lastChild(plain, root(f.host, plain))), (Attributes{{"b", {"3"}}, {"a", {"2"}}}));
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
            if (def.name == "audience") EXPECT_EQ(def.defaults, std::vector<std::string>{}) << "an empty default";
    }
    const Handle content = f.host.open(f.folder.hostPath("content.xml"), OpenParams{});
    ASSERT_NE(f.host.simpleSave(content, f.folder.hostPath("again.xml"), false), kNoObject);
    std::ifstream again(toSystemPath(f.folder.hostPath("again.xml")));
    const std::string saved((std::istreambuf_iterator<char>(again)), std::istreambuf_iterator<char>());
    EXPECT_NE(saved.find("<p audience=\"\" platform=\"\" otherprops=\"print\">"), std::string::npos) << saved;
}

TEST(Attributes, WritingTheList) {
    struct Case {
        const char* name;
        Attributes written;
        bool accepted;
        Attributes after;
    };
    const Attributes unchanged = {{"platform", {}}, {"audience", {"novice"}}, {"id", {}}};
    const Case cases[] = {
        {"several values, the list replaces what was there",
         {{"platform", {"win", "mac"}}},
         true,
         {{"platform", {"win", "mac"}}, {"audience", {}}, {"id", {}}}},
        {"an empty value unsets", {{"audience", {}}}, true, {{"platform", {}}, {"audience", {}}, {"id", {}}}},
        {"an undeclared name changes nothing", {{"audience", {"expert"}}, {"colour", {"red"}}}, false, unchanged},
        {"names are case-sensitive", {{"Audience", {"expert"}}}, false, unchanged},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        HostFixture f;
        Doc d = paraDoc(f);
        f.host.clearError();
        EXPECT_EQ(f.host.setAttributes(d.doc, d.para, c.written), c.accepted);
        EXPECT_EQ(f.host.errorNumber(), c.accepted ? kErrorNone : kErrorFailed);
        EXPECT_EQ(f.host.attributes(d.doc, d.para), c.after);
        EXPECT_EQ(f.host.isModified(d.doc), c.accepted);
    }
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
    // Another definition for the element keeps the values it declares.
    TreeBuilder note;
    note.define("Note", kElementContainer, {AttributeDefinition{"audience", kAttrString, 0, {}, {}}});
    note.leaf("Note");
    ASSERT_EQ(f.host.importElementDefinitions(d.doc, note.build(f.host, f.folder.hostPath("n.xml")), 0), 0);
    ASSERT_TRUE(f.host.setElementDefinition(d.doc, d.para, f.host.namedObject(d.doc, kElementDefinitionObject, "Note")));
    EXPECT_EQ(f.host.attributes(d.doc, d.para), (Attributes{{"audience", {"novice"}}}));
}

}  // namespace
}  // namespace voka::headless::testing
