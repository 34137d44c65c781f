// Tables as the filters use them: deleting rows of a table that holds another,
// conditions on rows, and a title taken off. (Finding and taking off hidden
// text is covered by the source filter's restore tests.)
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

// A table with a heading row and three body rows; the last body row holds a
// nested table with one row.
struct Table {
    explicit Table(HostFixture& f) {
        TreeBuilder b;
        b.open("Chapter").open("table").leaf("title", {}, "T");
        b.open("thead").open("row").leaf("entry", {}, "h").close().close();
        b.open("tbody");
        b.open("row").leaf("entry", {}, "a").close();
        b.open("row").leaf("entry", {}, "b").close();
        b.open("row").open("entry").open("table").open("tbody").open("row").leaf("entry", {}, "x");
        doc = b.build(f.host, f.folder.hostPath("t.xml"));
        table = f.host.firstTable(doc);
        for (Handle r = f.host.firstRow(doc, table); r != kNoObject; r = f.host.nextRow(doc, r)) rows.push_back(r);
        inner = f.host.nextTable(doc, table);
    }
    Handle doc, table, inner;
    std::vector<Handle> rows;  // heading row, then the body rows
};

TEST(Tables, DeletingRows) {
    struct Case {
        const char* name;
        int first;  // index into the rows
        int count;
        bool deleted;
        std::vector<std::string> rowsLeft;
    };
    const Case cases[] = {
        {"the heading row", 0, 1, true, {"a", "b", "x"}},
        {"two body rows of three", 1, 2, true, {"h", "x"}},
        {"every body row", 1, 3, false, {"h", "a", "b", "x"}},
        {"more rows than there are", 2, 5, false, {"h", "a", "b", "x"}},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        HostFixture f;
        Table t(f);
        EXPECT_EQ(f.host.deleteRows(t.doc, t.table, t.rows[k.first], k.count), k.deleted);
        std::vector<std::string> left;
        for (Handle r = f.host.firstRow(t.doc, t.table); r != kNoObject; r = f.host.nextRow(t.doc, r))
            left.push_back(elementText(f.host, t.doc, f.host.elementOfObject(t.doc, r)));
        EXPECT_EQ(left, k.rowsLeft);
        // The nested table is a table of its own, with its one row.
        EXPECT_EQ(f.host.nextRow(t.doc, f.host.firstRow(t.doc, t.inner)), kNoObject);
    }
}

TEST(Tables, RowConditionsAndTitles) {
    HostFixture f;
    Table t(f);
    const Handle hidden = f.host.newNamedObject(t.doc, kConditionFormatObject, "Hidden");
    ASSERT_TRUE(f.host.setRowConditions(t.doc, t.rows[2], {hidden}));
    EXPECT_EQ(f.host.rowConditions(t.doc, t.rows[2]), std::vector<Handle>{hidden});
    EXPECT_TRUE(f.host.rowConditions(t.doc, t.rows[1]).empty());
    EXPECT_FALSE(f.host.setRowConditions(t.doc, t.table, {hidden}));  // not a row
    // A cell cannot be deleted; a title goes with title position 0.
    EXPECT_FALSE(f.host.deleteObject(t.doc, f.host.firstChild(t.doc, f.host.elementOfObject(t.doc, t.rows[1]))));
    ASSERT_TRUE(f.host.setIntProperty(t.doc, t.table, kPropTblTitlePosition, 0));
    EXPECT_EQ(elementText(f.host, t.doc, f.host.elementOfObject(t.doc, t.table)), "habx");
}

}  // namespace
}  // namespace voka::headless::testing
