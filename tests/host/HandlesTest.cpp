// Handles name objects the plug-in keeps between calls; a handle of a
// deleted or closed object, or handle 0, must fail cleanly, never reach
// another object.
#include "HostFixture.h"

#include "frame/PluginState.h"

namespace voka::headless::testing {
namespace {

TEST(Handles, OperationsOnGoneObjectsFailCleanly) {
    HostFixture f;
    Chapter s = chapter(f, "a.xml");
    const Handle deleted = s.first;
    ASSERT_TRUE(f.host.deleteObject(s.doc, deleted));
    Chapter closed = chapter(f, "b.xml");
    ASSERT_EQ(f.host.close(closed.doc, 0), 0);
    const Handle marker = f.host.newMarker(s.doc, TextLocation{s.title, 0});
    ASSERT_TRUE(f.host.deleteObject(s.doc, marker));
    const Handle condition = f.host.newNamedObject(s.doc, kConditionFormatObject, "Hidden");
    const TextRange title = f.host.elementTextRange(s.doc, s.title);

    struct Case {
        const char* name;
        std::function<bool()> failed;
    };
    Host& h = f.host;
    const Case cases[] = {
        {"first child of a deleted element", [&] { return h.firstChild(s.doc, deleted) == kNoObject; }},
        {"setting attributes of a deleted element",
         [&] { return !h.setAttributes(s.doc, deleted, {{"audience", {"expert"}}}); }},
        {"deleting twice", [&] { return !h.deleteObject(s.doc, deleted); }},
        {"adding text in a deleted element", [&] { return !h.addText(s.doc, {deleted, 0}, "x"); }},
        {"an element handle 0", [&] { return h.parent(s.doc, kNoObject) == kNoObject; }},
        {"a document handle 0", [&] { return h.mainFlow(kNoObject) == kNoObject; }},
        {"a closed document", [&] { return h.mainFlow(closed.doc) == kNoObject; }},
        {"closing a closed document", [&] { return h.close(closed.doc, kCloseModified) != 0; }},
        {"an element handle used as a document", [&] { return h.mainFlow(s.chapter) == kNoObject; }},
        {"a deleted marker", [&] { return !h.setMarkerText(s.doc, marker, "x"); }},
        {"a colour handle 0", [&] { return !h.setTextProperty(s.doc, title, TextProperty::Color, 0); }},
        {"the refresh marker as a colour",
         [&] { return !h.setTextProperty(s.doc, title, TextProperty::Color, static_cast<int>(kRefreshEddColor)); }},
        {"a condition handle as a colour",
         [&] { return !h.setTextProperty(s.doc, title, TextProperty::Color, static_cast<int>(condition)); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        f.host.clearError();
        EXPECT_TRUE(c.failed());
        EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
    }
    // The survivors are untouched.
    EXPECT_EQ(children(f.host, s.doc, s.chapter), (std::vector<Handle>{s.title, s.second}));
    EXPECT_EQ(elementText(f.host, s.doc, s.chapter), "IntroWorld");
}

// Handle 0 in each family of operations: no crash, a failure the plug-in sees.
TEST(Handles, EveryFamilyRefusesTheNoneHandle) {
    HostFixture f;
    Host& h = f.host;
    const Handle doc = chapter(f).doc;
    const TextRange none{};
    const std::vector<std::pair<const char*, std::function<void()>>> calls = {
        {"simpleSave", [&] { h.simpleSave(0, "", false); }},
        {"addText", [&] { h.addText(doc, {}, "x"); }},
        {"setTextProperty", [&] { h.setTextProperty(doc, none, TextProperty::Overline, 1); }},
        {"findConditionalText", [&] { h.findConditionalText(doc, {}, {"Hidden"}); }},
        {"addCommandToMenu", [&] { h.addCommandToMenu(0, 0); }},
        {"modalDialog", [&] { h.modalDialog(1, 0); }},
        {"intProperty", [&] { h.intProperty(doc, 0x2A000000u, kPropUnique); }},
    };
    for (const auto& [name, call] : calls) {
        SCOPED_TRACE(name);
        f.host.clearError();
        call();
        EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
    }
}

TEST(Handles, IdsAreNeverReused) {
    HostFixture f;
    Chapter s = chapter(f, "a.xml");
    ASSERT_TRUE(f.host.deleteObject(s.doc, s.second));
    const Handle added = f.host.newElement(s.doc, f.host.elementDefinition(s.doc, s.first), {s.chapter, kNoObject, 0});
    ASSERT_NE(added, kNoObject);
    EXPECT_NE(added, s.second);
    // The unique number is how the plug-in tells a deleted element: 0, without an error.
    f.host.clearError();
    EXPECT_EQ(f.host.intProperty(s.doc, s.second, kPropUnique), 0);
    EXPECT_EQ(f.host.errorNumber(), kErrorNone);
    // A document opened after another was closed gets a new handle too.
    ASSERT_EQ(f.host.close(s.doc, kCloseModified), 0);
    EXPECT_NE(chapter(f, "a.xml").doc, s.doc);
}

TEST(Handles, AnInjectedFaultFailsOnlyTheChosenCall) {
    HostFixture f;
    Chapter s = chapter(f, "a.xml");
    f.host.failMutation(2);
    EXPECT_TRUE(f.host.setAttributes(s.doc, s.first, {{"audience", {"expert"}}}));
    EXPECT_FALSE(f.host.setAttributes(s.doc, s.first, {{"audience", {"general"}}}));
    EXPECT_EQ(f.host.errorNumber(), kErrorBusy);
    EXPECT_EQ(f.host.attributes(s.doc, s.first)[0].values, std::vector<std::string>{"expert"});
    EXPECT_TRUE(f.host.setAttributes(s.doc, s.first, {{"audience", {"general"}}}));
    EXPECT_EQ(f.host.attributes(s.doc, s.first)[0].values, std::vector<std::string>{"general"});
}

}  // namespace
}  // namespace voka::headless::testing
