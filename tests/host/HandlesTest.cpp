// Handles name objects the plug-in keeps between calls; a handle of a
// deleted or closed object must fail cleanly, never reach another object.
#include "HostFixture.h"

#include "frame/PluginState.h"

namespace voka::headless::testing {
namespace {

struct Sample {
    Handle doc;
    Handle chapter;
    std::vector<Handle> paras;
};

Sample chapterWithParas(HostFixture& f, const std::string& name) {
    TreeBuilder b;
    b.open("Chapter").leaf("Para", {{"audience", "novice"}}, "one").leaf("Para", {}, "two").leaf("Para", {}, "three");
    b.close();
    Sample s;
    s.doc = b.build(f.host, f.folder.hostPath(name));
    s.chapter = root(f.host, s.doc);
    s.paras = children(f.host, s.doc, s.chapter);
    return s;
}

TEST(Handles, OperationsOnGoneObjectsFailCleanly) {
    HostFixture f;
    Sample s = chapterWithParas(f, "a.xml");
    const Handle deleted = s.paras[1];
    ASSERT_TRUE(f.host.deleteObject(s.doc, deleted));
    Sample closed = chapterWithParas(f, "b.xml");
    ASSERT_EQ(f.host.close(closed.doc, 0), 0);
    const Handle marker = f.host.newMarker(s.doc, TextLocation{s.paras[0], 0});
    ASSERT_TRUE(f.host.deleteObject(s.doc, marker));
    const Handle condition = f.host.newNamedObject(s.doc, kConditionFormatObject, "Hidden");
    const TextRange firstPara = f.host.elementTextRange(s.doc, s.paras[0]);

    struct Case {
        const char* name;
        std::function<bool()> failed;
    };
    Host& h = f.host;
    const Case cases[] = {
        {"first child of a deleted element", [&] { return h.firstChild(s.doc, deleted) == kNoObject; }},
        {"next sibling of a deleted element", [&] { return h.nextSibling(s.doc, deleted) == kNoObject; }},
        {"attributes of a deleted element", [&] { return h.attributes(s.doc, deleted).empty(); }},
        {"setting attributes of a deleted element",
         [&] { return !h.setAttributes(s.doc, deleted, {{"audience", {"expert"}}}); }},
        {"text range of a deleted element", [&] { return h.elementTextRange(s.doc, deleted) == TextRange{}; }},
        {"deleting twice", [&] { return !h.deleteObject(s.doc, deleted); }},
        {"adding text in a deleted element", [&] { return !h.addText(s.doc, {deleted, 0}, "x"); }},
        {"an element handle 0", [&] { return h.parent(s.doc, kNoObject) == kNoObject; }},
        {"a document handle 0", [&] { return h.mainFlow(kNoObject) == kNoObject; }},
        {"a closed document", [&] { return h.mainFlow(closed.doc) == kNoObject; }},
        {"an element of a closed document", [&] { return h.firstChild(closed.doc, closed.chapter) == kNoObject; }},
        {"closing a closed document", [&] { return h.close(closed.doc, kCloseModified) != 0; }},
        {"an element handle used as a document", [&] { return h.mainFlow(s.chapter) == kNoObject; }},
        {"a document handle used as an element", [&] { return h.firstChild(s.doc, s.doc) == kNoObject; }},
        {"a deleted marker", [&] { return !h.setMarkerText(s.doc, marker, "x"); }},
        {"a colour handle 0", [&] { return !h.setTextProperty(s.doc, firstPara, TextProperty::Color, 0); }},
        {"the refresh marker as a colour",
         [&] { return !h.setTextProperty(s.doc, firstPara, TextProperty::Color, static_cast<int>(kRefreshEddColor)); }},
        {"a condition handle as a colour",
         [&] { return !h.setTextProperty(s.doc, firstPara, TextProperty::Color, static_cast<int>(condition)); }},
        {"a range in a deleted element", [&] { return h.text(s.doc, {{deleted, 0}, {deleted, 1}}).empty(); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        f.host.clearError();
        EXPECT_TRUE(c.failed());
        EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
    }
    // The survivors are untouched.
    EXPECT_EQ(children(f.host, s.doc, s.chapter), (std::vector<Handle>{s.paras[0], s.paras[2]}));
    EXPECT_EQ(elementText(f.host, s.doc, s.chapter), "onethree");
}

// Handle 0 everywhere: no crash, a failure the plug-in can see.
TEST(Handles, EveryOperationRefusesTheNoneHandle) {
    HostFixture f;
    Host& h = f.host;
    const Handle doc = chapterWithParas(f, "a.xml").doc;
    const TextRange none{};
    std::string out;
    const std::vector<std::pair<const char*, std::function<void()>>> calls = {
        {"setActiveDocument", [&] { h.setActiveDocument(0); }},
        {"setActiveBook", [&] { h.setActiveBook(0); }},
        {"nextOpenDocument", [&] { h.nextOpenDocument(0); }},
        {"nextOpenBook", [&] { h.nextOpenBook(0); }},
        {"simpleSave", [&] { h.simpleSave(0, "", false); }},
        {"close", [&] { h.close(0, 0); }},
        {"path", [&] { h.path(0); }},
        {"title", [&] { h.title(0); }},
        {"setVisible", [&] { h.setVisible(0, true); }},
        {"firstComponent", [&] { h.firstComponent(0); }},
        {"nextComponent", [&] { h.nextComponent(0, 0); }},
        {"componentPath", [&] { h.componentPath(0, 0); }},
        {"newComponent", [&] { h.newComponent(0, 0, "x"); }},
        {"updateBook", [&] { h.updateBook(0); }},
        {"firstFlow", [&] { h.firstFlow(0); }},
        {"nextFlow", [&] { h.nextFlow(doc, 0); }},
        {"flowName", [&] { h.flowName(doc, 0); }},
        {"highestLevelElement", [&] { h.highestLevelElement(doc, 0); }},
        {"lastChild", [&] { h.lastChild(doc, 0); }},
        {"previousSibling", [&] { h.previousSibling(doc, 0); }},
        {"elementDefinition", [&] { h.elementDefinition(doc, 0); }},
        {"setElementDefinition", [&] { h.setElementDefinition(doc, 0, 0); }},
        {"elementType", [&] { h.elementType(doc, 0); }},
        {"toTextLocation", [&] { h.toTextLocation(doc, {}); }},
        {"formattingObject", [&] { h.formattingObject(doc, 0); }},
        {"firstParagraph", [&] { h.firstParagraph(doc, 0); }},
        {"elementOfObject", [&] { h.elementOfObject(doc, 0); }},
        {"definitionTag", [&] { h.definitionTag(doc, 0); }},
        {"nextElementDefinition", [&] { h.nextElementDefinition(doc, 0); }},
        {"attributeDefinitions", [&] { h.attributeDefinitions(doc, 0); }},
        {"newElement", [&] { h.newElement(doc, 0, {}); }},
        {"deleteObject", [&] { h.deleteObject(doc, 0); }},
        {"addText", [&] { h.addText(doc, {}, "x"); }},
        {"text", [&] { h.text(doc, none); }},
        {"elementSelection", [&] { h.elementSelection(0); }},
        {"copySelection", [&] { h.copySelection(doc); }},
        {"paste", [&] { h.paste(doc); }},
        {"clearSelection", [&] { h.clearSelection(doc); }},
        {"importElementDefinitions", [&] { h.importElementDefinitions(doc, 0, 0); }},
        {"importFormats", [&] { h.importFormats(0, doc, 0); }},
        {"setTextProperty", [&] { h.setTextProperty(doc, none, TextProperty::Overline, 1); }},
        {"textProperty", [&] { h.textProperty(doc, {}, TextProperty::Color); }},
        {"namedObject", [&] { h.namedObject(0, kColorObject, "Red"); }},
        {"objectName", [&] { h.objectName(doc, 0); }},
        {"conditionShown", [&] { h.conditionShown(doc, 0); }},
        {"setTextConditions", [&] { h.setTextConditions(doc, none, {}); }},
        {"textConditions", [&] { h.textConditions(doc, {}); }},
        {"findConditionalText", [&] { h.findConditionalText(doc, {}, {"Hidden"}); }},
        {"nextTable", [&] { h.nextTable(doc, 0); }},
        {"firstRow", [&] { h.firstRow(doc, 0); }},
        {"setRowConditions", [&] { h.setRowConditions(doc, 0, {}); }},
        {"deleteRows", [&] { h.deleteRows(doc, 0, 0, 1); }},
        {"newMarker", [&] { h.newMarker(doc, {}); }},
        {"setMarkerType", [&] { h.setMarkerType(doc, 0, 0); }},
        {"markerText", [&] { h.markerText(doc, 0); }},
        {"nextXRef", [&] { h.nextXRef(doc, 0); }},
        {"setXRefSourceFile", [&] { h.setXRefSourceFile(doc, 0, "x"); }},
        {"addCommandToMenu", [&] { h.addCommandToMenu(0, 0); }},
        {"addMenuToMenu", [&] { h.addMenuToMenu(0, 0); }},
        {"modalDialog", [&] { h.modalDialog(1, 0); }},
        {"modelessDialog", [&] { h.modelessDialog(1, 0); }},
        {"dialogItem", [&] { h.dialogItem(0, 1); }},
        {"setDialogTitle", [&] { h.setDialogTitle(0, "x"); }},
        {"setItemText", [&] { h.setItemText(0, 0, "x"); }},
        {"itemState", [&] { h.itemState(0, 0); }},
        {"setItemLabels", [&] { h.setItemLabels(0, 0, {}); }},
        {"setItemSensitive", [&] { h.setItemSensitive(0, 0, false); }},
        {"intProperty", [&] { h.intProperty(doc, 0x2A000000u, kPropUnique); }},
        {"setStringProperty", [&] { h.setStringProperty(doc, 0x2A000000u, 1, "x"); }},
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
    Sample s = chapterWithParas(f, "a.xml");
    const Handle para = f.host.namedObject(s.doc, kElementDefinitionObject, "Para");
    ASSERT_TRUE(f.host.deleteObject(s.doc, s.paras[2]));
    const Handle added = f.host.newElement(s.doc, para, {s.chapter, kNoObject, 0});
    ASSERT_NE(added, kNoObject);
    EXPECT_NE(added, s.paras[2]);
    EXPECT_EQ(f.host.parent(s.doc, s.paras[2]), kNoObject);

    // The unique number is how the plug-in tells a deleted element: 0, without an error.
    f.host.clearError();
    EXPECT_EQ(f.host.intProperty(s.doc, s.paras[2], kPropUnique), 0);
    EXPECT_EQ(f.host.errorNumber(), kErrorNone);
    EXPECT_NE(f.host.intProperty(s.doc, added, kPropUnique), 0);
    EXPECT_NE(f.host.intProperty(s.doc, added, kPropUnique), f.host.intProperty(s.doc, s.paras[0], kPropUnique));

    // A document opened after another was closed gets a new handle too.
    Sample closed = chapterWithParas(f, "b.xml");
    ASSERT_EQ(f.host.close(closed.doc, 0), 0);
    Sample reopened = chapterWithParas(f, "b.xml");
    EXPECT_NE(reopened.doc, closed.doc);
}

TEST(Handles, TypeCodesSitInTheTopByte) {
    HostFixture f;
    TreeBuilder b;
    b.open("Chapter").open("table").open("tbody").open("row").leaf("entry", {}, "cell").close().close().close();
    b.leaf("fn", {}, "note").close();
    const Handle doc = b.build(f.host, f.folder.hostPath("t.xml"));
    const Handle table = f.host.firstTable(doc);
    const Handle row = f.host.firstRow(doc, table);
    const Handle cell = f.host.formattingObject(doc, f.host.firstChild(doc, f.host.elementOfObject(doc, row)));
    const Handle footnote = f.host.formattingObject(doc, f.host.lastChild(doc, root(f.host, doc)));
    f.folder.write("dialogs/t_Dialog.xml", R"(<dialog name="t_Dialog"><item number="1" kind="label"/></dialog>)");
    const Handle dialog = f.host.openDialogResource("t_Dialog");

    struct Case {
        const char* name;
        Handle handle;
        int type;
    };
    const Case cases[] = {
        {"document", doc, kDocumentObject},
        {"element", root(f.host, doc), kElementObject},
        {"flow", f.host.mainFlow(doc), kFlowObject},
        {"colour", f.host.namedObject(doc, kColorObject, "Blue"), kColorObject},
        {"marker type", f.host.namedObject(doc, kMarkerTypeObject, "Hypertext"), kMarkerTypeObject},
        {"condition format", f.host.newNamedObject(doc, kConditionFormatObject, "Hidden"), kConditionFormatObject},
        {"element definition", f.host.namedObject(doc, kElementDefinitionObject, "Chapter"), kElementDefinitionObject},
        {"table", table, kTableObject},
        {"row", row, kRowObject},
        {"cell", cell, kCellObject},
        {"footnote", footnote, kFootnoteObject},
        {"marker", f.host.newMarker(doc, {root(f.host, doc), 0}), kMarkerObject},
        {"host menu", f.host.namedObject(kNoObject, kMenuObject, "!MakerMainMenu"), kMenuObject},
        {"command", f.host.defineCommand(1, "c", "C", ""), kCommandObject},
        {"separator", f.host.newNamedObject(kNoObject, kMenuSeparatorObject, "sep"), kMenuSeparatorObject},
        {"dialog", dialog, kDialogResourceObject},
        {"dialog item", f.host.dialogItem(dialog, 1), kDialogItemObject},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(objectType(c.handle), c.type);
        EXPECT_NE(handleId(c.handle), 0u);
    }
}

TEST(Handles, AnInjectedFaultFailsOnlyTheChosenCall) {
    HostFixture f;
    Sample s = chapterWithParas(f, "a.xml");
    const Handle para = s.paras[0];
    f.host.failMutation(2);
    EXPECT_TRUE(f.host.setAttributes(s.doc, para, {{"audience", {"expert"}}}));
    EXPECT_FALSE(f.host.setAttributes(s.doc, para, {{"audience", {"general"}}}));
    EXPECT_EQ(f.host.errorNumber(), kErrorBusy);
    EXPECT_EQ(f.host.attributes(s.doc, para)[0].values, std::vector<std::string>{"expert"});
    EXPECT_TRUE(f.host.setAttributes(s.doc, para, {{"audience", {"general"}}}));
    EXPECT_EQ(f.host.attributes(s.doc, para)[0].values, std::vector<std::string>{"general"});
}

}  // namespace
}  // namespace voka::headless::testing
