// Typed reads and writes of settings documents, the element search and the
// edge cases users meet: the "True"-only boolean, the three-way asymmetry,
// the missing-value sentinel, duplicate attribute names and undeclared keys.
#include "settings/HostSession.h"
#include "settings/SettingsDocument.h"

#include <gtest/gtest.h>

namespace voka {
namespace {

using testing::HostSession;

const char* kDocument = R"(<?xml version="1.0" encoding="UTF-8"?>
<voka-document version="1">
  <element-definitions>
    <element-definition tag="Settings" type="1"/>
    <element-definition tag="Group" type="1">
      <attribute-definition name="Key" kind="0" flags="0"/>
      <attribute-definition name="Other" kind="0" flags="0"/>
      <attribute-definition name="List" kind="1" flags="0"><default>d1</default><default>d2</default></attribute-definition>
    </element-definition>
    <element-definition tag="Bare" type="1"/>
    <element-definition tag="Side" type="1">
      <attribute-definition name="Key" kind="0" flags="0"/>
    </element-definition>
  </element-definitions>
  <flow name="A" main="1">
    <element tag="Settings">
      <element tag="Bare"/>
      <element tag="Group"><attribute name="Other"><value>first</value></attribute></element>
      <element tag="Group"><attribute name="Other"><value>second</value></attribute></element>
    </element>
  </flow>
  <flow name="Notes">
    <element tag="Side"><attribute name="Key"><value>in notes</value></attribute></element>
  </flow>
</voka-document>
)";

class SettingsDocumentTest : public ::testing::Test {
protected:
    void SetUp() override {
        const auto path = session.folder / "settings.fm";
        testing::writeFile(path, kDocument);
        doc = openSettingsInvisibly(host(), HostSession::hostPath(path));
        ASSERT_NE(doc, kNoObject);
        root = host().highestLevelElement(doc, host().mainFlow(doc));
        group = findElement(host(), state(), doc, kNoObject, "Group", "*", "*", "Main");
        ASSERT_NE(group, kNoObject);
    }
    Host& host() { return session.host; }
    PluginState& state() { return session.state(); }

    HostSession session;
    Handle doc = kNoObject;
    Handle root = kNoObject;
    Handle group = kNoObject;
};

TEST_F(SettingsDocumentTest, TypedReadsFollowTheValueWords) {
    struct Case {
        const char* stored;
        int type;
        int number;
        const char* text;
    };
    const Case cases[] = {
        {"True", kSettingBoolean, 1, ""},
        {"true", kSettingBoolean, 0, ""},
        {"TRUE", kSettingBoolean, 0, ""},
        {"1", kSettingBoolean, 0, ""},
        {"42", kSettingInteger, 42, ""},
        {"17 apples", kSettingInteger, 17, ""},
        {"-5", kSettingInteger, -5, ""},
        {"x", kSettingInteger, 0, ""},
        {"", kSettingInteger, 0, ""},
        {"Never", kSettingThreeWay, 3, ""},
        {"Once", kSettingThreeWay, 2, ""},
        {"Always", kSettingThreeWay, 1, ""},
        {"never", kSettingThreeWay, 1, ""},
        {"", kSettingThreeWay, 1, ""},
        {"abc", kSettingString, 1, "abc"},
        {"", kSettingString, 1, kMissingValue},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.stored) + " as type " + std::to_string(c.type));
        ASSERT_TRUE(writeString(host(), state(), doc, group, "Key", c.stored));
        std::string text;
        EXPECT_EQ(readSetting(host(), state(), doc, "Group", "Key", text, c.type), c.number);
        if (c.type == kSettingString) {
            EXPECT_EQ(text, c.text);
        }
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
        {kSettingThreeWay, 0, "Never", 3},  {kSettingThreeWay, 1, "Always", 1}, {kSettingThreeWay, 2, "Once", 2},
        {kSettingThreeWay, 3, "Always", 1}, {kSettingBoolean, 1, "True", 1},    {kSettingBoolean, 0, "False", 0},
        {kSettingBoolean, 5, "False", 0},   {kSettingInteger, -12, "-12", -12},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.number) + " as type " + std::to_string(c.type));
        ASSERT_EQ(writeSetting(host(), state(), doc, "Group", "Key", c.number, "", c.type), 1);
        std::string word;
        readString(host(), state(), doc, group, "Key", word);
        EXPECT_EQ(word, c.word);
        std::string unused;
        EXPECT_EQ(readSetting(host(), state(), doc, "Group", "Key", unused, c.type), c.readBack);
    }
}

TEST_F(SettingsDocumentTest, MissingSettingsAndUndeclaredKeys) {
    std::string text = "unchanged";
    // No element carries the key: a string read gives the sentinel, nothing is written.
    EXPECT_EQ(readSetting(host(), state(), doc, "Group", "Nowhere", text, kSettingString), 0);
    EXPECT_EQ(text, kMissingValue);
    EXPECT_EQ(writeSetting(host(), state(), doc, "Group", "Nowhere", 0, "x", kSettingString), 0);
    EXPECT_EQ(writeSetting(host(), state(), doc, "Group", "Key", 0, "x", 9), 0);

    const Attributes before = host().attributes(doc, group);
    EXPECT_FALSE(writeString(host(), state(), doc, group, "Undeclared", "x"));
    EXPECT_EQ(state().settingsError, 212);
    EXPECT_EQ(host().attributes(doc, group), before);

    const Handle bare = findElement(host(), state(), doc, kNoObject, "Bare", "*", "*", "Main");
    EXPECT_FALSE(writeString(host(), state(), doc, bare, "Key", "x"));
    EXPECT_EQ(state().settingsError, 213);

    EXPECT_EQ(readString(host(), state(), doc, group, "Undeclared", text), -1);
    EXPECT_EQ(text, kMissingValue);
    EXPECT_EQ(readNumber(host(), state(), doc, group, "Undeclared"), 0);
    EXPECT_EQ(state().settingsError, 222);
    EXPECT_EQ(readString(host(), state(), kNoObject, group, "Key", text), -1);
    EXPECT_EQ(state().settingsError, 200);
}

TEST_F(SettingsDocumentTest, ElementSearch) {
    struct Case {
        const char* tag;
        const char* attribute;
        const char* value;
        const char* root;
        const char* expectedOther;  // "Other" of the Group found, "" for another element, nullptr for none
        const char* expectedTag;
    };
    const Case cases[] = {
        {"*", "*", "*", "Main", "", "Settings"},
        {"*", "*", "*", "", "", "Settings"},
        {"*", "*", "*", "MAIN", "", "Settings"},
        {"Group", "*", "*", "Main", "first", "Group"},
        {"Group", "Other", "second", "Main", "second", "Group"},
        {"*", "Other", "second", "Main", "second", "Group"},
        {"Group", "Other", "Second", "Main", nullptr, ""},
        {"Group", "Missing", "*", "Main", nullptr, ""},
        {"Side", "Key", "in notes", "Notes", "", "Side"},
        {"Side", "*", "*", "Main", nullptr, ""},
        {"*", "*", "*", "NoSuchFlow", nullptr, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.tag) + " " + c.attribute + "=" + c.value + " in " + c.root);
        const Handle found = findElement(host(), state(), doc, kNoObject, c.tag, c.attribute, c.value, c.root);
        if (c.expectedOther == nullptr) {
            EXPECT_EQ(found, kNoObject);
            continue;
        }
        ASSERT_NE(found, kNoObject);
        EXPECT_EQ(host().definitionTag(doc, host().elementDefinition(doc, found)), c.expectedTag);
        if (*c.expectedOther != '\0') {
            std::string other;
            readString(host(), state(), doc, found, "Other", other);
            EXPECT_EQ(other, c.expectedOther);
        }
    }
    EXPECT_EQ(findElement(host(), state(), doc, kNoObject, "*", "*", "*", "Main"), root);
    // A search from a start element stays inside its subtree.
    const Handle second = findElement(host(), state(), doc, kNoObject, "Group", "Other", "second", "Main");
    EXPECT_EQ(findElement(host(), state(), doc, second, "Group", "Other", "first", "Main"), kNoObject);
    EXPECT_EQ(findElement(host(), state(), doc, second, "Bare", "*", "*", "Main"), kNoObject);
}

TEST_F(SettingsDocumentTest, ListsAndChildren) {
    EXPECT_EQ(readList(host(), doc, group, "List", true), (std::vector<std::string>{"d1", "d2"}));
    EXPECT_TRUE(readList(host(), doc, group, "List", false).empty());
    ASSERT_TRUE(writeList(host(), state(), doc, group, "List", {"a", "b", "c"}));
    EXPECT_EQ(readList(host(), doc, group, "List", true), (std::vector<std::string>{"a", "b", "c"}));

    state().settingsList = {"x", "y"};
    EXPECT_EQ(writeSetting(host(), state(), doc, "Group", "List", 0, "", kSettingList), 1);
    state().settingsList.clear();
    std::string unused;
    EXPECT_EQ(readSetting(host(), state(), doc, "Group", "List", unused, kSettingList), 1);
    EXPECT_EQ(state().settingsList, (std::vector<std::string>{"x", "y"}));

    EXPECT_EQ(countChildren(host(), doc, root, "Group", false), 2);
    EXPECT_EQ(countChildren(host(), doc, root, "", false), 3);
    EXPECT_EQ(listChildValues(host(), state(), doc, root, "Other"),
              (std::vector<std::string>{kMissingValue, "first", "second"}));
}

// A host whose one element carries two attributes of the same name, as a
// hand-made settings document can.
class DuplicateNameHost : public headless::HeadlessHost {
public:
    using HeadlessHost::HeadlessHost;
    Attributes attributes(Handle doc, Handle element) override {
        if (element != duplicated) return HeadlessHost::attributes(doc, element);
        return stored;
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
    testing::writeFile(folder / "s.fm", kDocument);
    const Handle doc = openSettingsInvisibly(host, HostSession::hostPath(folder / "s.fm"));
    host.duplicated = findElement(host, state, doc, kNoObject, "Group", "*", "*", "Main");
    ASSERT_NE(host.duplicated, kNoObject);

    std::string value;
    EXPECT_EQ(readString(host, state, doc, host.duplicated, "Key", value), 2);
    EXPECT_EQ(value, "last");
    EXPECT_EQ(attributeIndex(host, doc, host.duplicated, "Key"), 2);
    EXPECT_EQ(readList(host, doc, host.duplicated, "Key", false), std::vector<std::string>{"last"});

    ASSERT_TRUE(writeString(host, state, doc, host.duplicated, "Key", "written"));
    EXPECT_EQ(host.stored[0].values, std::vector<std::string>{"written"});
    EXPECT_EQ(host.stored[2].values, std::vector<std::string>{"last"});

    ASSERT_TRUE(writeList(host, state, doc, host.duplicated, "Key", {"l1", "l2"}));
    EXPECT_EQ(host.stored[0].values, std::vector<std::string>{"written"});
    EXPECT_EQ(host.stored[2].values, (std::vector<std::string>{"l1", "l2"}));
}

}  // namespace
}  // namespace voka
