// The full form of a document read with an external DTD keeps the element
// definitions its elements use and those of the internal subset, and leaves
// out the rest of a DTD that may declare hundreds.
#include "persist/TestFiles.h"

#include <algorithm>

namespace voka::test {
namespace {

std::vector<std::string> definedTags(const Document& doc) {
    std::vector<std::string> tags;
    for (const ElementDefinition& def : doc.definitions)
        if (def.alive) tags.push_back(def.tag);
    std::sort(tags.begin(), tags.end());
    return tags;
}

TEST(FullFormDefinitions, OnlyWhatIsUsedOrDeclaredInTheDocumentComesFromAnExternalDtd) {
    ScratchFolder folder;
    folder.write("big.dtd", "<!ELEMENT topic (title, body?)>\n<!ATTLIST topic audience CDATA #IMPLIED>\n"
                            "<!ELEMENT title (#PCDATA)>\n<!ELEMENT body (#PCDATA)>\n<!ELEMENT unused (#PCDATA)>\n"
                            "<!ATTLIST alsoUnused x CDATA #IMPLIED>\n");
    const std::string path = folder.write(
        "t.xml", "<?xml version=\"1.0\"?>\n<!DOCTYPE topic SYSTEM \"big.dtd\" [<!ELEMENT local (#PCDATA)>]>\n"
                 "<topic audience=\"novice\"><title>T</title></topic>\n");
    LoadResult read = loadFile(path);
    ASSERT_TRUE(read.document) << read.error;
    EXPECT_EQ((std::vector<std::string>{"alsoUnused", "body", "local", "title", "topic", "unused"}),
              definedTags(*read.document))
        << "the model holds every declaration";

    ASSERT_TRUE(saveDocument(*read.document, folder.file("t.voka.xml"), SaveForm::Full).ok);
    LoadResult again = loadFile(folder.file("t.voka.xml"));
    ASSERT_TRUE(again.document) << again.error;
    EXPECT_EQ((std::vector<std::string>{"local", "title", "topic"}), definedTags(*again.document));
    const Document& a = *read.document;
    const Document& b = *again.document;
    EXPECT_EQ(a.flows[0].text, b.flows[0].text);
    ASSERT_EQ(a.elements.size(), b.elements.size());
    for (std::size_t e = 0; e < a.elements.size(); ++e) {
        EXPECT_EQ(a.definitions[a.elements[e].definition].tag, b.definitions[b.elements[e].definition].tag);
        EXPECT_EQ(a.elements[e].attributesCount, b.elements[e].attributesCount);
    }
}

}  // namespace
}  // namespace voka::test
