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
        // Handle 0 in each family of operations.
        {"saving document 0", [&] { return h.simpleSave(0, "", false) == kNoObject; }},
        {"adding text at no location", [&] { return !h.addText(s.doc, {}, "x"); }},
        {"a property of no text", [&] { return !h.setTextProperty(s.doc, TextRange{}, TextProperty::Overline, 1); }},
        {"searching conditions from no location", [&] { return h.findConditionalText(s.doc, {}, {"Hidden"}), true; }},
        {"menu 0", [&] { return !h.addCommandToMenu(0, 0); }},
        {"dialog 0", [&] { return h.modalDialog(1, 0), true; }},
        {"an object that is no handle", [&] { return h.intProperty(s.doc, 0x2A000000u, kPropUnique) == 0; }},
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

}  // namespace
}  // namespace voka::headless::testing
