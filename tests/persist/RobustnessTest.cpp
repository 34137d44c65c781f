// The loader against a few thousand damaged versions of valid files
// (cut short, bytes flipped, markup characters inserted, stretches dropped
// or repeated): it never crashes or hangs, gives a document or an error,
// never both, and what it does load can be saved and read again.
#include "TestFiles.h"

#include <cstdio>
#include <random>

namespace voka::test {
namespace {

std::string mutate(const std::string& seed, std::mt19937& random) {
    static const char kInteresting[] = "<>&\"';]?!-=/#x0\n\xff\xc3";
    std::string s = seed;
    auto pick = [&](std::size_t n) { return n == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, n - 1)(random); };
    const int edits = 1 + static_cast<int>(pick(3));
    for (int i = 0; i < edits && !s.empty(); ++i) {
        switch (pick(5)) {
            case 0: s.resize(pick(s.size())); break;
            case 1: s[pick(s.size())] ^= static_cast<char>(1 << pick(8)); break;
            case 2: s.insert(pick(s.size()), 1, kInteresting[pick(sizeof kInteresting - 1)]); break;
            case 3: s.erase(pick(s.size()), pick(16)); break;
            case 4: s.insert(pick(s.size()), s.substr(pick(s.size()), pick(24))); break;
        }
    }
    return s;
}

TEST(Robustness, DamagedFilesNeverCrashTheLoader) {
    ScratchFolder folder;
    // The rich document in both forms: the content one carries every instruction.
    auto rich = richDocument();
    std::vector<std::string> seeds{kChapter,
                                  "<!DOCTYPE a [<!ENTITY co 'L &amp; C'>]><a xmlns:x='urn:x'>one <x:b k='v'>two</x:b> &co;"
                                  "<![CDATA[<raw>]]><?pi x?></a>\n<?voka-condition name=\"Hidden\" shown=\"0\"?>\n", savedText(folder, *rich, "seed.fm")};
    rich->contentForm = true;
    seeds.push_back(savedText(folder, *rich, "seed.xml"));
    seeds.push_back("<?xml version=\"1.0\"?>\n<voka-book version=\"1\">\n  <component path=\"a.xml\"/>\n"
                    "  <component path=\"/b/c.xml\"/>\n</voka-book>\n");
    std::mt19937 random(20240601);
    int loadedCount = 0, failedCount = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::string& seed = seeds[static_cast<std::size_t>(round) % seeds.size()];
        // A new file each round: rewriting one in place makes the file system flush it.
        std::remove(folder.file("input.xml").c_str());
        const std::string input = folder.write("input.xml", mutate(seed, random));
        LoadResult loaded = loadFile(input);
        const bool gotSomething = loaded.document || loaded.book;
        ASSERT_NE(gotSomething, !loaded.error.empty()) << "round " << round << ": " << loaded.error;
        if (!gotSomething) {
            ++failedCount;
            EXPECT_THAT(loaded.error, Not(HasSubstr("Cannot open")));
            continue;
        }
        ++loadedCount;
        if (!loaded.document || loadedCount % 10 != 0) continue;
        const std::string output = folder.file("output.xml");
        SaveResult saved = saveDocument(*loaded.document, output);
        if (!saved.ok) {
            // A damaged file may leave nothing a content file can hold.
            EXPECT_THAT(saved.error, HasSubstr("no root element"));
            continue;
        }
        LoadResult again = loadFile(output);
        EXPECT_TRUE(again.document) << "round " << round << ": " << again.error << "\n" << readFile(input);
    }
    // The mutations must exercise both paths for the test to mean anything.
    EXPECT_GT(loadedCount, 100);
    EXPECT_GT(failedCount, 100);
}

}  // namespace
}  // namespace voka::test
