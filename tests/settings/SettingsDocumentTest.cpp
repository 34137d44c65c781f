// Typed reads and writes of settings documents, the element search and the
// edge cases users meet: the "True"-only boolean, the three-way asymmetry,
// the missing-value sentinel, duplicate attribute names and undeclared keys.
#include "settings/HostSession.h"
#include "settings/SettingsDocument.h"

namespace voka {
namespace {

using testing::List;

// Two Groups under a root that also holds a Bare element, and a Side element in a second flow.
const std::string kDocument = [] {
    using testing::attribute;
    std::string xml =
        testing::definitions({{"Settings", {}}, {"Bare", {}}, {"Side", {"Key"}}, {"Group", {"Key", "Other", "List"}}}) +
        "<element tag=\"Settings\"><element tag=\"Bare\"/>\n<element tag=\"Group\">" + attribute("Other", "first") +
        "</element>\n<element tag=\"Group\">" + attribute("Other", "second") + "</element></element></flow>\n" +
        "<flow name=\"Notes\"><element tag=\"Side\">" + attribute("Key", "in notes") + "</element></flow>\n</voka-document>\n";
    // List is a string list with two default values.
    const std::string plain = "name=\"List\" kind=\"0\" flags=\"0\"/>";
    return xml.replace(xml.find(plain), plain.size(),
                       "name=\"List\" kind=\"1\" flags=\"0\"><default>d1</default><default>d2</default></attribute-definition>");
}();

// A host whose Group element can carry two attributes of the same name, as a
// hand-made settings document can.
struct DuplicateNameHost : headless::HeadlessHost {
    using HeadlessHost::HeadlessHost;
    Attributes attributes(Handle doc, Handle element) override {
        return element == duplicated ? stored : HeadlessHost::attributes(doc, element);
    }
    bool setAttributes(Handle doc, Handle element, const Attributes& attributes) override {
        return element == duplicated ? (stored = attributes, true) : HeadlessHost::setAttributes(doc, element, attributes);
    }
    Handle duplicated = kNoObject;
    Attributes stored = {{"Key", {"first"}}, {"Other", {"o"}}, {"Key", {"last"}}};
};

template <class H>
class DocumentTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::writeFile(session.folder / "s.fm", kDocument);
        doc = openSettingsInvisibly(host, testing::HostSession::hostPath(session.folder / "s.fm"));
        group = find("Group");
        ASSERT_NE(group, kNoObject);
    }
    Handle find(const char* tag, const char* attribute = "*", const char* value = "*", const char* root = "Main",
                Handle start = kNoObject) {
        return findElement(host, state, doc, start, tag, attribute, value, root);
    }
    int read(const char* key, std::string& text, int type) { return readSetting(host, state, doc, "Group", key, text, type); }
    std::string stored(Handle element, const char* key) {
        std::string text;
        readString(host, state, doc, element, key, text);
        return text;
    }

    testing::BasicHostSession<H> session;
    Host& host = session.host;
    PluginState& state = session.state();
    Handle doc = kNoObject;
    Handle group = kNoObject;
};
using SettingsDocumentTest = DocumentTest<headless::HeadlessHost>;
using SettingsDuplicateNames = DocumentTest<DuplicateNameHost>;

TEST_F(SettingsDocumentTest, TypedValuesAreWordsReadBackAsymmetrically) {
    struct Case {
        int type;
        std::optional<int> written;  // a number written, which must store `word`; else `word` is stored as it is
        const char* word;
        int readBack;
        const char* text = "";  // for string reads
    };
    const Case cases[] = {
        {kSettingThreeWay, 0, "Never", 3},         {kSettingThreeWay, 2, "Once", 2},  {kSettingThreeWay, 3, "Always", 1},
        {kSettingThreeWay, {}, "never", 1},        {kSettingBoolean, 1, "True", 1},   {kSettingBoolean, 5, "False", 0},
        {kSettingBoolean, {}, "true", 0},          {kSettingBoolean, {}, "1", 0},     {kSettingInteger, -12, "-12", -12},
        {kSettingInteger, {}, "17 apples", 17},    {kSettingInteger, {}, "x", 0},
        {kSettingString, {}, "abc", 1, "abc"},     {kSettingString, {}, "", 1, kMissingValue},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.word) + " as type " + std::to_string(c.type));
        if (c.written) {
            ASSERT_EQ(writeSetting(host, state, doc, "Group", "Key", *c.written, "", c.type), 1);
            EXPECT_EQ(stored(group, "Key"), c.word);
        } else {
            ASSERT_TRUE(writeString(host, state, doc, group, "Key", c.word));
        }
        std::string text;
        EXPECT_EQ(read("Key", text, c.type), c.readBack);
        EXPECT_EQ(c.type == kSettingString ? text : "", c.text);
    }
}

TEST_F(SettingsDocumentTest, MissingSettingsAndUndeclaredKeys) {
    std::string text = "unchanged";
    // No element carries the key: a string read gives the sentinel, nothing is written.
    EXPECT_EQ(read("Nowhere", text, kSettingString), 0);
    EXPECT_EQ(text, kMissingValue);
    EXPECT_EQ(writeSetting(host, state, doc, "Group", "Nowhere", 0, "x", kSettingString), 0);
    EXPECT_EQ(writeSetting(host, state, doc, "Group", "Key", 0, "x", 9), 0);

    const Attributes before = host.attributes(doc, group);
    EXPECT_FALSE(writeString(host, state, doc, group, "Undeclared", "x"));
    EXPECT_EQ(state.settingsError, 212);
    EXPECT_EQ(host.attributes(doc, group), before);
    EXPECT_FALSE(writeString(host, state, doc, find("Bare"), "Key", "x"));
    EXPECT_EQ(state.settingsError, 213);
    EXPECT_EQ(readString(host, state, doc, group, "Undeclared", text), -1);
    EXPECT_EQ(text, kMissingValue);
    EXPECT_EQ(readNumber(host, state, doc, group, "Undeclared"), 0);
    EXPECT_EQ(state.settingsError, 222);
    EXPECT_EQ(readString(host, state, kNoObject, group, "Key", text), -1);
    EXPECT_EQ(state.settingsError, 200);
}

TEST_F(SettingsDocumentTest, ElementSearch) {
    const Handle root = host.highestLevelElement(doc, host.mainFlow(doc));
    const Handle second = find("Group", "Other", "second");
    ASSERT_NE(second, kNoObject);
    const std::pair<Handle, Handle> cases[] = {
        {find("*"), root},
        {find("*", "*", "*", ""), root},
        {find("*", "*", "*", "MAIN"), root},
        {find("*", "Other", "second"), second},
        {find("Group", "Other", "Second"), kNoObject},
        {find("Group", "Missing"), kNoObject},
        {find("Side", "*", "*", "Main"), kNoObject},
        {find("*", "*", "*", "NoSuchFlow"), kNoObject},
        // A search from a start element stays inside its subtree.
        {find("Group", "Other", "first", "Main", second), kNoObject},
    };
    for (const auto& [found, expected] : cases) EXPECT_EQ(found, expected) << &found - &cases[0].first;
    EXPECT_EQ(stored(find("Side", "Key", "in notes", "Notes"), "Key"), "in notes");
}

TEST_F(SettingsDocumentTest, ListDefaultsAndChildren) {
    EXPECT_EQ(readList(host, doc, group, "List", true), (List{"d1", "d2"}));
    EXPECT_TRUE(readList(host, doc, group, "List", false).empty());
    const Handle root = find("*");
    EXPECT_EQ(countChildren(host, doc, root, "Group", false), 2);
    EXPECT_EQ(countChildren(host, doc, root, "", false), 3);
    EXPECT_EQ(listChildValues(host, state, doc, root, "Other"), (List{kMissingValue, "first", "second"}));
}

TEST_F(SettingsDuplicateNames, ReadsAndListWritesUseTheLastStringWritesTheFirst) {
    session.host.duplicated = group;
    std::string value;
    EXPECT_EQ(readString(host, state, doc, group, "Key", value), 2);
    EXPECT_EQ(value, "last");
    EXPECT_EQ(readList(host, doc, group, "Key", false), List{"last"});
    ASSERT_TRUE(writeString(host, state, doc, group, "Key", "written"));
    ASSERT_TRUE(writeList(host, state, doc, group, "Key", {"l1", "l2"}));
    EXPECT_EQ(session.host.stored[0].values, List{"written"});
    EXPECT_EQ(session.host.stored[2].values, (List{"l1", "l2"}));
}

}  // namespace
}  // namespace voka
