// Attributes as the plug-in reads and writes settings and scheme matches:
// every declared attribute in declaration order, defaults kept apart, writes
// limited to what the definition declares.
#include "HostFixture.h"

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
