// DITA maps and documents assembled by XInclude open as books whose
// components are the files they refer to, in reading order; and such a book
// is never written back over the map or the document it was read from.
#include "HostFixture.h"

#include "host/headless/persist/FileReferences.h"
#include "host/headless/persist/Persist.h"

#include <gmock/gmock.h>
#include <algorithm>
#include <gtest/gtest.h>

namespace voka::headless::testing {
namespace {

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;

struct Opened {
    Handle object = kNoObject;
    std::vector<std::string> components;  // relative to the scratch folder
    std::vector<std::string> warnings;
};

struct BookFiles : HostFixture {
    Opened open(const std::string& name) {
        agent.clearTranscript();
        Opened opened;
        opened.object = host.simpleOpen(folder.hostPath(name), false);
        const std::string prefix = toHostPath(folder.path().string()) + "\\";
        if (objectType(opened.object) == kBookObject) {
            for (Handle c = host.firstComponent(opened.object); c != kNoObject; c = host.nextComponent(opened.object, c)) {
                std::string path = host.componentPath(opened.object, c);
                if (path.rfind(prefix, 0) == 0) path = path.substr(prefix.size());
                std::replace(path.begin(), path.end(), '\\', '/');
                opened.components.push_back(path);
            }
        }
        opened.warnings = agent.texts(Said::Warning);
        return opened;
    }
};

std::string xml(const std::string& body) { return "<?xml version=\"1.0\"?>\n" + body + "\n"; }

const char* const kTopic = "<?xml version=\"1.0\"?>\n<topic id=\"t\"><title>T</title></topic>\n";

struct BookCase {
    const char* what;
    std::vector<std::pair<std::string, std::string>> files;  // name, content; topics named but not given are written as topics
    std::vector<std::string> topics;                          // files to write as plain topics
    std::string open;
    std::vector<std::string> components;  // expected, in order
    std::vector<std::string> warnings;    // one expected part per warning, in order
};

void runCases(const std::vector<BookCase>& cases) {
    for (const BookCase& c : cases) {
        SCOPED_TRACE(c.what);
        BookFiles f;
        for (const auto& [name, content] : c.files) f.folder.write(name, content);
        for (const std::string& topic : c.topics) f.folder.write(topic, kTopic);
        const Opened opened = f.open(c.open);
        ASSERT_EQ(objectType(opened.object), kBookObject);
        EXPECT_THAT(opened.components, ElementsAreArray(c.components));
        ASSERT_EQ(opened.warnings.size(), c.warnings.size()) << ::testing::PrintToString(opened.warnings);
        for (std::size_t i = 0; i < c.warnings.size(); ++i) EXPECT_THAT(opened.warnings[i], HasSubstr(c.warnings[i]));
    }
}

TEST(MapBooks, TopicsInReadingOrderOnceEachWithWhatIsNotATopicLeftOut) {
    const std::string everything = xml(R"x(<map>
  <title>Guide</title>
  <topicref href="a.dita">
    <topicref href="b.dita#b/section"/>
    <chapter href="c.dita"><topicref href="a.dita#a"/></chapter>
  </topicref>
  <topicref href="a.dita"/>
  <topicref href="page.html"/>
  <topicref href="x.dita" format="html"/>
  <topicref href="card.pdf" format="pdf"/>
  <topicref href="http://example.com/t.dita"/>
  <topicref href="ext.dita" scope="external"/>
  <topicref href="peer.dita" scope="peer"/>
  <topicref href=""/>
  <topicref href="#local"/>
  <topicref navtitle="no reference"/>
  <keydef keys="k" href="key.dita"/>
  <keydef keys="k2" href="key2.dita" processing-role="normal"/>
  <topicref href="res.dita" processing-role="resource-only"/>
  <topicgroup processing-role="resource-only"><topicref href="inherited.dita"/></topicgroup>
  <topicgroup scope="external"><topicref href="inherited-too.dita"/></topicgroup>
  <reltable><relrow><relcell><topicref href="related.dita"/></relcell></relrow></reltable>
  <appendix href="d.xml" format="DITA"/>
  <topicref href="missing.dita"/>
  <unknown href="u.dita"/>
  <lesson class="- map/topicref course-d/lesson " href="e.dita"/>
  <chapter class="- map/topicmeta " href="f.dita"/>
  <topicref href="sub%20folder/g.dita"/>
</map>)x");
    runCases({
        {"references of every kind",
         {{"guide.ditamap", everything}},
         {"a.dita", "b.dita", "c.dita", "d.xml", "e.dita", "f.dita", "u.dita", "x.dita", "ext.dita", "peer.dita",
          "key.dita", "key2.dita", "res.dita", "inherited.dita", "inherited-too.dita", "related.dita", "sub folder/g.dita"},
         "guide.ditamap",
         // A missing topic is still a component: the book says so when it is opened.
         {"a.dita", "b.dita", "c.dita", "key2.dita", "d.xml", "missing.dita", "e.dita", "sub folder/g.dita"},
         {}},
        {"a root whose class names map/map, in a file named otherwise",
         {{"course.xml", xml(R"x(<course class="- map/map course/course "><lesson class="- map/topicref course-d/lesson " href="a.dita"/></course>)x")}},
         {"a.dita"},
         "course.xml",
         {"a.dita"},
         {}},
        {"a bookmap, with no DTD: DITA's names tell the references",
         {{"book.xml", xml(R"x(<bookmap><frontmatter><preface href="p.dita"/></frontmatter><part href="part.dita"><chapter href="c.dita"/></part><backmatter><appendices><appendix href="x.dita"/></appendices></backmatter></bookmap>)x")}},
         {"p.dita", "part.dita", "c.dita", "x.dita"},
         "book.xml",
         {"p.dita", "part.dita", "c.dita", "x.dita"},
         {}},
    });
}

TEST(MapBooks, NestedMapsExpandInPlaceWithCyclesAndBrokenMapsLeftOut) {
    std::vector<std::pair<std::string, std::string>> chain;
    std::vector<std::string> chainTopics, expectedChain;
    const std::size_t chainLength = kMaxMapNesting + 5;
    for (std::size_t i = 0; i < chainLength; ++i) {
        const std::string n = std::to_string(i);
        chain.push_back({"m" + n + ".ditamap", xml("<map><topicref href=\"t" + n + ".dita\"/><mapref href=\"m" +
                                                   std::to_string(i + 1) + ".ditamap\"/></map>")});
        chainTopics.push_back("t" + n + ".dita");
        if (i < kMaxMapNesting) expectedChain.push_back("t" + n + ".dita");
    }
    runCases({
        {"maps in other folders, by mapref, by format and by extension; topics relative to their map",
         {{"top.ditamap", xml(R"x(<map><topicref href="a.dita"/><mapref href="sub/s.ditamap"/>
              <topicref href="sub/s2.ditamap"/><topicref href="other.xml" format="ditamap"/><topicref href="z.dita"/></map>)x")},
          {"sub/s.ditamap", xml(R"x(<map><topicref href="../b.dita"><topicref href="c.dita"/></topicref>
              <topicref href="deeper.ditamap" format="ditamap"/><topicref href="c.dita"/></map>)x")},
          {"sub/deeper.ditamap", xml(R"x(<map><topicref href="../a.dita"/><topicref href="d.dita"/></map>)x")},
          {"sub/s2.ditamap", xml(R"x(<map><topicref href="e.dita"/><mapref href="deeper.ditamap"/></map>)x")},
          {"other.xml", xml(R"x(<map><topicref href="f.dita"/></map>)x")}},
         {"a.dita", "b.dita", "sub/c.dita", "sub/d.dita", "sub/e.dita", "f.dita", "z.dita"},
         "top.ditamap",
         {"a.dita", "b.dita", "sub/c.dita", "sub/d.dita", "sub/e.dita", "f.dita", "z.dita"},
         {}},
        {"a map that refers to itself or to a map that refers to it",
         {{"top.ditamap", xml(R"x(<map><topicref href="a.dita"/><mapref href="top.ditamap"/><mapref href="loop.ditamap"/><topicref href="c.dita"/></map>)x")},
          {"loop.ditamap", xml(R"x(<map><topicref href="b.dita"/><mapref href="./top.ditamap"/><mapref href="loop.ditamap"/></map>)x")}},
         {"a.dita", "b.dita", "c.dita"},
         "top.ditamap",
         {"a.dita", "b.dita", "c.dita"},
         {"top.ditamap\" is left out: it is being expanded already", "top.ditamap\" is left out: it is being expanded already",
          "loop.ditamap\" is left out: it is being expanded already"}},
        {"missing, malformed and non-map files referenced as maps: the rest of the book opens",
         {{"top.ditamap", xml(R"x(<map><topicref href="a.dita"/><mapref href="gone.ditamap"/><mapref href="broken.ditamap"/>
              <topicref href="topic.xml" format="ditamap"/><topicref href="b.dita"/></map>)x")},
          {"broken.ditamap", "<map><topicref href=\"x.dita\"></map>"},
          {"topic.xml", kTopic}},
         {"a.dita", "b.dita", "x.dita"},
         "top.ditamap",
         {"a.dita", "b.dita"},
         {"gone.ditamap\" is left out: Cannot open", "broken.ditamap\" is left out:",
          "topic.xml\" is left out: " /* names the file */}},
        {"maps nested deeper than the limit", chain, chainTopics, "m0.ditamap", expectedChain,
         {"m" + std::to_string(kMaxMapNesting) + ".ditamap\" is left out: maps nest more than"}},
    });
}

TEST(MapBooks, XIncludeChildrenOfTheRootMakeABookOfTheIncludedFiles) {
    runCases({
        {"XIncludes among other children; text includes left out; an xpointer names the whole file",
         {{"book.xml", xml(R"x(<book xmlns:xi="http://www.w3.org/2001/XInclude"><title>T</title>
              <xi:include href="c1.xml"/><para>between</para>
              <xi:include href="sub/c2.xml" xpointer="element(/1)"/>
              <xi:include href="notes.txt" parse="text"/>
              <xi:include href="c1.xml"/>
              <section><xi:include href="deep.xml"/></section>
              <xi:include href="missing.xml"/></book>)x")}},
         {"c1.xml", "sub/c2.xml", "deep.xml"},
         "book.xml",
         {"c1.xml", "sub/c2.xml", "missing.xml"},
         {}},
        {"the namespace decides, whatever the prefix; xml:base moves the references",
         {{"set.xml", xml(R"x(<set xml:base="parts/"><include href="plain.xml"/>
              <inc:include xmlns:inc="http://www.w3.org/2001/XInclude" href="a.xml"/>
              <include xmlns="http://www.w3.org/2001/XInclude" xml:base="../other/" href="b.xml"/>
              <x:include xmlns:x="http://example.com/not-xinclude" href="c.xml"/></set>)x")}},
         {},
         "set.xml",
         {"parts/a.xml", "other/b.xml"},
         {}},
        {"references that name no other local file",
         {{"book.xml", xml(R"x(<book xmlns:xi="http://www.w3.org/2001/XInclude">
              <xi:include href="http://example.com/c.xml"/><xi:include xpointer="id(intro)"/>
              <xi:include href="c.xml" parse="html"/><xi:include href="a.xml"/></book>)x")}},
         {"a.xml", "c.xml"},
         "book.xml",
         {"a.xml"},
         {"http://example.com/c.xml\" is left out: it is on the network", "includes part of this document",
          "parse=\"html\""}},
    });

    // Only XIncludes of XML that are children of the root make a book.
    for (const char* body :
         {R"x(<book xmlns:xi="http://www.w3.org/2001/XInclude"><xi:include href="notes.txt" parse="text"/></book>)x",
          R"x(<book xmlns:xi="http://www.w3.org/2001/XInclude"><chapter><xi:include href="c.xml"/></chapter></book>)x"}) {
        SCOPED_TRACE(body);
        BookFiles f;
        f.folder.write("doc.xml", xml(body));
        EXPECT_EQ(objectType(f.open("doc.xml").object), kDocumentObject);
    }

    // A chapter that includes sections is a document when its book opens it, and so is a new document made from a book.
    BookFiles f;
    const std::string xi = "xmlns:xi=\"http://www.w3.org/2001/XInclude\"";
    f.folder.write("book.xml", xml("<book " + xi + "><xi:include href=\"ch.xml\"/></book>"));
    f.folder.write("ch.xml", xml("<chapter " + xi + "><title>C</title><xi:include href=\"s.xml\"/></chapter>"));
    ASSERT_EQ(objectType(f.open("book.xml").object), kBookObject);
    EXPECT_EQ(objectType(f.open("ch.xml").object), kDocumentObject);
    EXPECT_EQ(objectType(f.host.openAsNewDocument(f.folder.hostPath("book.xml"))), kDocumentObject);
}

// The content in the repository, with DTDs of its own and DocBook's from
// the system catalog: every file reads without a warning.
TEST(MapBooks, RepositoryMapAndDocBookBook) {
    const std::string content = std::string(VOKA_SOURCE_DIR) + "/tests/content/";
    struct Case {
        std::string file;
        std::vector<std::string> components;
    } cases[] = {
        {"dita/guide.ditamap", {"dita/intro.dita", "dita/sensors.dita", "dita/install.dita", "dita/calibrate.dita", "dita/troubleshoot.dita"}},
        {"docbook/book.xml", {"docbook/chapters/ch01-overview.xml", "docbook/chapters/ch02-platforms.xml", "docbook/chapters/ch03-maintenance.xml"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        LoadResult loaded = loadFile(content + c.file);
        ASSERT_TRUE(loaded.book) << loaded.error;
        EXPECT_EQ(loaded.warnings, std::vector<std::string>{});
        std::vector<std::string> components;
        for (const BookComponent& component : loaded.book->components) components.push_back(component.path);
        std::vector<std::string> expected;
        for (const std::string& name : c.components) expected.push_back(content + name);
        EXPECT_EQ(components, expected);
        for (const std::string& component : components) {
            LoadResult chapter = loadFile(component);
            ASSERT_TRUE(chapter.document) << component << ": " << chapter.error;
            EXPECT_EQ(chapter.warnings, std::vector<std::string>{}) << component;
        }
    }
    // DocBook's profiling values separated by ';' are several values.
    LoadResult chapter = loadFile(content + "docbook/chapters/ch02-platforms.xml");
    ASSERT_TRUE(chapter.document);
    const Document& doc = *chapter.document;
    const auto os = doc.definitions[doc.elements[2].definition].attributeIndex.find("os");
    ASSERT_NE(os, doc.definitions[doc.elements[2].definition].attributeIndex.end());
    EXPECT_EQ(doc.values.get(doc.attributeValues(2, os->second)), (std::vector<std::string>{"mac", "linux"}));
}

// A map or an XInclude document is the writer's own: the book read from it
// is saved in place only when there is nothing to save, and Save As writes
// a voka book elsewhere.
TEST(MapBooks, NeverWrittenOverTheMapOrTheIncludingDocument) {
    struct Case {
        const char* file;
        std::string content;
        const char* refusal;
    } cases[] = {
        {"guide.ditamap", xml(R"x(<map><topicref href="a.dita"/></map>)x"), "is a DITA map"},
        {"book.xml", xml(R"x(<book xmlns:xi="http://www.w3.org/2001/XInclude"><xi:include href="a.xml"/></book>)x"),
         "is a document assembled by XInclude"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        BookFiles f;
        f.folder.write(c.file, c.content);
        const Handle book = f.open(c.file).object;
        ASSERT_EQ(objectType(book), kBookObject);

        EXPECT_EQ(f.host.simpleSave(book, "", false), book) << "unchanged: nothing to write";
        EXPECT_EQ(f.folder.read(c.file), c.content);

        ASSERT_NE(f.host.newComponent(book, f.host.firstComponent(book), f.folder.hostPath("added.xml")), kNoObject);
        f.agent.clearTranscript();
        EXPECT_EQ(f.host.simpleSave(book, "", false), kNoObject);
        EXPECT_EQ(f.host.simpleSave(book, f.folder.hostPath(c.file), false), kNoObject);
        ASSERT_EQ(f.agent.texts(Said::Error).size(), 2u);
        EXPECT_THAT(f.agent.texts(Said::Error)[0], HasSubstr(c.refusal));
        EXPECT_EQ(f.folder.read(c.file), c.content) << "the map or document is left as it was";
        EXPECT_TRUE(f.host.isModified(book));

        EXPECT_EQ(f.host.simpleSave(book, f.folder.hostPath("copy.book"), false), book);
        EXPECT_THAT(f.folder.read("copy.book"), HasSubstr("<component path=\"added.xml\"/>"));
        EXPECT_EQ(f.folder.read(c.file), c.content);
        // Saved as a voka book, the book is that file now, and may be saved there again.
        ASSERT_NE(f.host.newComponent(book, kNoObject, f.folder.hostPath("first.xml")), kNoObject);
        EXPECT_EQ(f.host.simpleSave(book, "", false), book);
        EXPECT_THAT(f.folder.read("copy.book"), HasSubstr("<component path=\"first.xml\"/>"));
    }
}

}  // namespace
}  // namespace voka::headless::testing
