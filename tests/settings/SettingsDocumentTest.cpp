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

Handle openDocument(Host& host, const std::filesystem::path& path) {
    testing::writeFile(path, kDocument);
    return openSettingsInvisibly(host, testing::HostSession::hostPath(path));
}

class SettingsDocumentTest : public ::testing::Test {
protected:
    void SetUp() override {
        doc = openDocument(host, session.folder / "s.fm");
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

    testing::HostSession session;
    Host& host = session.host;
    PluginState& state = session.state();
    Handle doc = kNoObject;
    Handle group = kNoObject;
};

TEST_F(SettingsDocumentTest, TypedReadsFollowTheValueWords) {
    struct Case {
        const char* stored;
        int type;
        int number;
        const char* text;  // for string reads
    };
    const Case cases[] = {
        {"True", kSettingBoolean, 1, ""},     {"true", kSettingBoolean, 0, ""},     {"1", kSettingBoolean, 0, ""},
        {"17 apples", kSettingInteger, 17, ""}, {"-5", kSettingInteger, -5, ""},  {"x", kSettingInteger, 0, ""},
        {"Never", kSettingThreeWay, 3, ""},   {"Once", kSettingThreeWay, 2, ""},    {"Always", kSettingThreeWay, 1, ""},
        {"never", kSettingThreeWay, 1, ""},   {"abc", kSettingString, 1, "abc"},    {"", kSettingString, 1, kMissingValue},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.stored) + " as type " + std::to_string(c.type));
        ASSERT_TRUE(writeString(host, state, doc, group, "Key", c.stored));
        std::string text;
        EXPECT_EQ(read("Key", text, c.type), c.number);
        EXPECT_EQ(c.type == kSettingString ? text : "", c.text);
    }
}

TEST_F(SettingsDocumentTest, TypedWritesUseTheWordsReadBackAsymmetrically) {
    struct Case {
        int type;
        int number;
        const char* word;
        int readBack;
    };
    const Case cases[] = {
        {kSettingThreeWay, 0, "Never", 3},  {kSettingThreeWay, 2, "Once", 2}, {kSettingThreeWay, 3, "Always", 1},
        {kSettingBoolean, 1, "True", 1},    {kSettingBoolean, 5, "False", 0}, {kSettingInteger, -12, "-12", -12},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.number) + " as type " + std::to_string(c.type));
        ASSERT_EQ(writeSetting(host, state, doc, "Group", "Key", c.number, "", c.type), 1);
        EXPECT_EQ(stored(group, "Key"), c.word);
        std::string unused;
        EXPECT_EQ(read("Key", unused, c.type), c.readBack);
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
    EXPECT_EQ(stored(second, "Other"), "second");
    struct Case {
        Handle found;
        Handle expected;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) EXPECT_EQ(c.found, c.expected) << &c - cases;
    EXPECT_EQ(stored(find("Side", "Key", "in notes", "Notes"), "Key"), "in notes");
}

TEST_F(SettingsDocumentTest, ListsAndChildren) {
    EXPECT_EQ(readList(host, doc, group, "List", true), (List{"d1", "d2"}));
    EXPECT_TRUE(readList(host, doc, group, "List", false).empty());
    state.settingsList = {"x", "y"};
    EXPECT_EQ(writeSetting(host, state, doc, "Group", "List", 0, "", kSettingList), 1);
    state.settingsList.clear();
    std::string unused;
    EXPECT_EQ(read("List", unused, kSettingList), 1);
    EXPECT_EQ(state.settingsList, (List{"x", "y"}));

    const Handle root = find("*");
    EXPECT_EQ(countChildren(host, doc, root, "Group", false), 2);
    EXPECT_EQ(countChildren(host, doc, root, "", false), 3);
    EXPECT_EQ(listChildValues(host, state, doc, root, "Other"), (List{kMissingValue, "first", "second"}));
}

// A host whose one element carries two attributes of the same name, as a
// hand-made settings document can.
class DuplicateNameHost : public headless::HeadlessHost {
public:
    using HeadlessHost::HeadlessHost;
    Attributes attributes(Handle doc, Handle element) override {
        return element == duplicated ? stored : HeadlessHost::attributes(doc, element);
    }
    bool setAttributes(Handle doc, Handle element, const Attributes& attributes) override {
        if (element != duplicated) return HeadlessHost::setAttributes(doc, element, attributes);
        stored = attributes;
        return true;
    }
    Handle duplicated = kNoObject;
    Attributes stored = {{"Key", {"first"}}, {"Other", {"o"}}, {"Key", {"last"}}};
};

TEST(SettingsDuplicateNames, ReadsAndListWritesUseTheLastStringWritesTheFirst) {
    testing::TempFolder folder;
    testing::TestUser user;
    DuplicateNameHost host(headless::HostConfig{folder.path().string()}, user);
    PluginState state;
    const Handle doc = openDocument(host, folder / "s.fm");
    host.duplicated = findElement(host, state, doc, kNoObject, "Group", "*", "*", "Main");
    ASSERT_NE(host.duplicated, kNoObject);

    std::string value;
    EXPECT_EQ(readString(host, state, doc, host.duplicated, "Key", value), 2);
    EXPECT_EQ(value, "last");
    EXPECT_EQ(readList(host, doc, host.duplicated, "Key", false), List{"last"});
    ASSERT_TRUE(writeString(host, state, doc, host.duplicated, "Key", "written"));
    ASSERT_TRUE(writeList(host, state, doc, host.duplicated, "Key", {"l1", "l2"}));
    EXPECT_EQ(host.stored[0].values, List{"written"});
    EXPECT_EQ(host.stored[2].values, (List{"l1", "l2"}));
}

}  // namespace
}  // namespace voka
