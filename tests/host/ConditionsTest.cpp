// Conditional text and tables as the source-file filter and restore use
// them: hiding, finding each hidden range, taking conditions off again, rows.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

struct Paras {
    Handle doc, chapter;
    std::vector<Handle> paras;
    Handle hidden, other;
};

// Five paragraphs "p0".."p4": Hidden on p1 and p3, Other on p2.
Paras paras(HostFixture& f) {
    TreeBuilder b;
    b.open("Chapter");
    for (int i = 0; i < 5; ++i) b.leaf("Para", {}, "p" + std::to_string(i));
    Paras p;
    p.doc = b.build(f.host, f.folder.hostPath("p.xml"));
    p.chapter = root(f.host, p.doc);
    p.paras = children(f.host, p.doc, p.chapter);
    p.hidden = f.host.newNamedObject(p.doc, kConditionFormatObject, "Hidden");
    p.other = f.host.newNamedObject(p.doc, kConditionFormatObject, "Other");
    for (int i : {1, 3}) EXPECT_TRUE(f.host.setTextConditions(p.doc, f.host.elementTextRange(p.doc, p.paras[i]), {p.hidden}));
    EXPECT_TRUE(f.host.setTextConditions(p.doc, f.host.elementTextRange(p.doc, p.paras[2]), {p.other}));
    return p;
}

TEST(Conditions, FindYieldsEachRangeInTurn) {
    struct Case {
        const char* name;
        std::vector<std::string> names;
        std::vector<std::string> found;  // texts found from the start, each search after the last
    };
    const Case cases[] = {
        {"one condition", {"Hidden"}, {"p1", "p3"}},
        {"adjacent ranges of either condition are one", {"Hidden", "Other"}, {"p1p2p3"}},
        {"a condition on no text", {"Unused"}, {}},
        {"a condition the document lacks", {"Nowhere"}, {}},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        HostFixture f;
        Paras p = paras(f);
        f.host.newNamedObject(p.doc, kConditionFormatObject, "Unused");
        std::vector<std::string> found;
        TextLocation from{f.host.mainFlow(p.doc), 0};
        f.host.clearError();
        for (int guard = 0; guard < 10; ++guard) {
            const TextRange range = f.host.findConditionalText(p.doc, from, k.names);
            if (f.host.errorNumber() != kErrorNone) break;
            found.push_back(f.host.text(p.doc, range));
            from = range.end;
        }
        EXPECT_EQ(found, k.found);
        EXPECT_EQ(f.host.errorNumber(), kErrorNotFound);
    }
}

TEST(Conditions, RestoreTakesEveryConditionOff) {
    HostFixture f;
    Paras p = paras(f);
    const TextLocation start{f.host.mainFlow(p.doc), 0};
    int rounds = 0;
    f.host.clearError();
    for (;;) {
        const TextRange range = f.host.findConditionalText(p.doc, start, {"Hidden"});
        if (f.host.errorNumber() != kErrorNone) break;
        ASSERT_TRUE(f.host.setTextConditions(p.doc, range, {}));
        ASSERT_LT(++rounds, 10);
    }
    EXPECT_EQ(rounds, 2);
    for (int i : {1, 3}) EXPECT_TRUE(f.host.textConditions(p.doc, {p.paras[i], 0}).empty());
    EXPECT_EQ(f.host.textConditions(p.doc, {p.paras[2], 1}), std::vector<Handle>{p.other});
}

TEST(Conditions, ShownFlagsAndShowAll) {
    HostFixture f;
    Paras p = paras(f);
    EXPECT_TRUE(f.host.conditionShown(p.doc, p.hidden));
    EXPECT_EQ(f.host.intProperty(p.doc, p.doc, kPropShowAll), 1);
    ASSERT_TRUE(f.host.setConditionShown(p.doc, p.hidden, false));
    ASSERT_TRUE(f.host.setIntProperty(p.doc, p.doc, kPropShowAll, 0));
    EXPECT_FALSE(f.host.conditionShown(p.doc, p.hidden));
    EXPECT_EQ(f.host.intProperty(p.doc, p.doc, kPropShowAll), 0);
    EXPECT_FALSE(f.host.document(p.doc)->showAll);
    // The same name twice is the same condition.
    EXPECT_EQ(f.host.newNamedObject(p.doc, kConditionFormatObject, "Hidden"), p.hidden);
}

struct Table {
    Handle doc, table, inner;
    std::vector<Handle> rows;  // heading row, then the body rows
};

// A table with a heading row and three body rows; the last body row holds a
// nested table with one row.
Table table(HostFixture& f) {
    TreeBuilder b;
    b.open("Chapter").open("table").leaf("title", {}, "T");
    b.open("thead").open("row").leaf("entry", {}, "h").close().close();
    b.open("tbody");
    b.open("row").leaf("entry", {}, "a").close();
    b.open("row").leaf("entry", {}, "b").close();
    b.open("row").open("entry").open("table").open("tbody").open("row").leaf("entry", {}, "x");
    Table t;
    t.doc = b.build(f.host, f.folder.hostPath("t.xml"));
    t.table = f.host.firstTable(t.doc);
    for (Handle r = f.host.firstRow(t.doc, t.table); r != kNoObject; r = f.host.nextRow(t.doc, r)) t.rows.push_back(r);
    t.inner = f.host.nextTable(t.doc, t.table);
    return t;
}

TEST(Tables, RowsOfATableInOrder) {
    HostFixture f;
    Table t = table(f);
    ASSERT_EQ(t.rows.size(), 4u);
    EXPECT_EQ(f.host.text(t.doc, f.host.elementTextRange(t.doc, f.host.elementOfObject(t.doc, t.rows[0]))), "h");
    EXPECT_EQ(f.host.text(t.doc, f.host.elementTextRange(t.doc, f.host.elementOfObject(t.doc, t.rows[3]))), "x");
    ASSERT_NE(t.inner, kNoObject);
    EXPECT_EQ(f.host.nextTable(t.doc, t.inner), kNoObject);
    const Handle innerRow = f.host.firstRow(t.doc, t.inner);
    EXPECT_EQ(f.host.nextRow(t.doc, innerRow), kNoObject);
    EXPECT_EQ(f.host.elementType(t.doc, f.host.elementOfObject(t.doc, t.rows[1])), kElementTableRow);
}

TEST(Tables, DeletingRows) {
    struct Case {
        const char* name;
        int first;  // index into the rows
        int count;
        bool deleted;
        std::size_t rowsLeft;
    };
    const Case cases[] = {
        {"the heading row", 0, 1, true, 3},
        {"one body row of three", 1, 1, true, 3},
        {"two body rows of three", 1, 2, true, 2},
        {"every body row", 1, 3, false, 4},
        {"more rows than there are", 2, 5, false, 4},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        HostFixture f;
        Table t = table(f);
        EXPECT_EQ(f.host.deleteRows(t.doc, t.table, t.rows[k.first], k.count), k.deleted);
        std::size_t left = 0;
        for (Handle r = f.host.firstRow(t.doc, t.table); r != kNoObject; r = f.host.nextRow(t.doc, r)) ++left;
        EXPECT_EQ(left, k.rowsLeft);
    }
}

TEST(Tables, RowConditionsAndTitles) {
    HostFixture f;
    Table t = table(f);
    const Handle hidden = f.host.newNamedObject(t.doc, kConditionFormatObject, "Hidden");
    ASSERT_TRUE(f.host.setRowConditions(t.doc, t.rows[2], {hidden}));
    EXPECT_EQ(f.host.rowConditions(t.doc, t.rows[2]), std::vector<Handle>{hidden});
    EXPECT_TRUE(f.host.rowConditions(t.doc, t.rows[1]).empty());
    EXPECT_FALSE(f.host.setRowConditions(t.doc, t.table, {hidden}));  // not a row
    // A cell cannot be deleted; a title goes with title position 0.
    const Handle cell = f.host.firstChild(t.doc, f.host.elementOfObject(t.doc, t.rows[1]));
    EXPECT_FALSE(f.host.deleteObject(t.doc, cell));
    EXPECT_EQ(f.host.intProperty(t.doc, t.table, kPropTblTitlePosition), 1);
    ASSERT_TRUE(f.host.setIntProperty(t.doc, t.table, kPropTblTitlePosition, 0));
    EXPECT_EQ(f.host.intProperty(t.doc, t.table, kPropTblTitlePosition), 0);
    const Handle tableElement = f.host.elementOfObject(t.doc, t.table);
    EXPECT_EQ(f.host.definitionTag(t.doc, f.host.elementDefinition(t.doc, f.host.firstChild(t.doc, tableElement))), "thead");
    EXPECT_EQ(elementText(f.host, t.doc, tableElement), "habx");
}

}  // namespace
}  // namespace voka::headless::testing
