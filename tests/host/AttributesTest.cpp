// Attributes as the plug-in reads and writes settings and scheme matches:
// every declared attribute in declaration order, defaults kept apart, writes
// limited to what the definition declares.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

using Values = std::vector<std::string>;

AttributeDefinitions paraAttributes() {
    return {
        AttributeDefinition{"platform", kAttrStrings, 0, {}, {"all"}},
        AttributeDefinition{"audience", kAttrString, 0, {}, {}},
        AttributeDefinition{"id", kAttrUniqueId, 0, {}, {}},
    };
}

struct Doc {
    Handle doc;
    Handle para;
};

Doc paraDoc(HostFixture& f) {
    TreeBuilder b;
    b.define("Para", kElementContainer, paraAttributes());
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
    const Attributes expected = {{"platform", {}}, {"audience", {"novice"}}, {"id", {}}};
    EXPECT_EQ(f.host.attributes(d.doc, d.para), expected);
    const AttributeDefinitions defs = f.host.attributeDefinitions(d.doc, f.host.elementDefinition(d.doc, d.para));
    ASSERT_EQ(defs.size(), 3u);
    EXPECT_EQ(defs[0].defaults, Values{"all"});
    EXPECT_EQ(defs[0].kind, kAttrStrings);
    // Undeclared tags get their attributes in first-seen order.
    TreeBuilder b;
    b.open("Root").leaf("Item", {{"b", "1"}}).leaf("Item", {{"a", "2"}, {"b", "3"}}).close();
    const Handle plain = b.build(f.host, f.folder.hostPath("b.xml"));
    const Handle second = f.host.lastChild(plain, root(f.host, plain));
    EXPECT_EQ(f.host.attributes(plain, second), (Attributes{{"b", {"3"}}, {"a", {"2"}}}));
}

TEST(Attributes, WritingTheList) {
    struct Case {
        const char* name;
        Attributes written;
        bool accepted;
        Attributes after;
    };
    const Case cases[] = {
        {"one value", {{"audience", {"expert"}}}, true, {{"platform", {}}, {"audience", {"expert"}}, {"id", {}}}},
        {"several values",
         {{"platform", {"win", "mac"}}, {"audience", {"novice"}}},
         true,
         {{"platform", {"win", "mac"}}, {"audience", {"novice"}}, {"id", {}}}},
        {"the list replaces what was there",
         {{"id", {"p1"}}},
         true,
         {{"platform", {}}, {"audience", {}}, {"id", {"p1"}}}},
        {"an empty value unsets", {{"audience", {}}}, true, {{"platform", {}}, {"audience", {}}, {"id", {}}}},
        {"an undeclared name changes nothing",
         {{"audience", {"expert"}}, {"colour", {"red"}}},
         false,
         {{"platform", {}}, {"audience", {"novice"}}, {"id", {}}}},
        {"names are case-sensitive",
         {{"Audience", {"expert"}}},
         false,
         {{"platform", {}}, {"audience", {"novice"}}, {"id", {}}}},
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
    const Handle source = newer.build(f.host, f.folder.hostPath("edd.xml"));
    EXPECT_EQ(f.host.importElementDefinitions(d.doc, source, 0), 0);
    EXPECT_EQ(f.host.attributes(d.doc, d.para),
              (Attributes{{"id", {"p1"}}, {"audience", {"novice"}}, {"status", {}}}));

    // Another definition for the element keeps the values it declares.
    const Handle note = f.host.newNamedObject(d.doc, kElementDefinitionObject, "Note");
    TreeBuilder noteSource;
    noteSource.define("Note", kElementContainer, {AttributeDefinition{"audience", kAttrString, 0, {}, {}}});
    noteSource.leaf("Note");
    ASSERT_EQ(f.host.importElementDefinitions(d.doc, noteSource.build(f.host, f.folder.hostPath("n.xml")), 0), 0);
    ASSERT_TRUE(f.host.setElementDefinition(d.doc, d.para, note));
    EXPECT_EQ(f.host.definitionTag(d.doc, f.host.elementDefinition(d.doc, d.para)), "Note");
    EXPECT_EQ(f.host.attributes(d.doc, d.para), (Attributes{{"audience", {"novice"}}}));
}

}  // namespace
}  // namespace voka::headless::testing
