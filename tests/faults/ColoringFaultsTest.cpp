// The colouring commands with each change they ask of the host failing in
// turn, as a busy or broken host would refuse one: the plug-in must not
// crash, must report success only where it does so by design (a refused text
// property while colouring is ignored), and must leave documents that save
// and load and files on disk that are whole.
#include "host/headless/persist/Persist.h"
#include "settings/HostSession.h"
#include "support/FailingHost.h"
#include "support/ModelEquality.h"

#include <filesystem>
#include <map>

namespace voka {
namespace {

using test::FailingHost;
namespace fs = std::filesystem;

// Two chapters of the example's vocabulary: "By audience" colours novice
// material red, expert blue and underlined, admin green and overlined.
const char* const kChapters[][2] = {
    {"one.xml", "<chapter id=\"ch\" audience=\"novice\">Intro <p audience=\"expert\">Expert text</p>"
                "<p audience=\"admin\">Admin text</p><p>Plain text</p></chapter>\n"},
    {"two.xml", "<chapter id=\"ch2\"><p audience=\"admin\">Admin <b audience=\"novice\">novice</b> text</p>"
                "<p audience=\"expert novice\">Both</p></chapter>\n"},
};
const char* const kBook =
    "<voka-book version=\"1\"><component path=\"one.xml\"/><component path=\"two.xml\"/></voka-book>\n";

constexpr const char* kSchemeDialog = "br_Dialog_2DDown_wChkBox";
constexpr int kOk = 9;

struct Command {
    const char* what;
    int number;        // the menu command
    int colourFirst;   // 0, or the command that colours the documents beforehand
    bool book;         // a book of both chapters, else the first chapter alone
    bool interactive;  // tells the user of a failure; the uncolour commands report only their result
};

using Files = std::map<fs::path, std::string>;

// Every file under the folder, with its bytes.
Files filesUnder(const fs::path& folder) {
    Files files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file()) files[entry.path()] = testing::readFile(entry.path());
    return files;
}

// A plug-in started on the failing host with the bundled example's main
// settings, "By audience" active, and the chapters (and book) of the command open.
class FaultWorld : public testing::BasicHostSession<FailingHost> {
public:
    explicit FaultWorld(const Command& command) {
        const fs::path master = folder / "shared" / "VOKA_MainSettings.fm";
        testing::writeFile(master, testing::readFile(VOKA_SOURCE_DIR "/resources/example/VOKA_MainSettings.fm"));
        putSharedSettings(testing::SharedSettings{1, 1, std::map<std::string, std::string>{
            {"MainSettingsDocPath", hostPath(master)}, {"DefaultCategory", "Software"},
            {"DefaultColoringScheme", "By audience"}}});
        host.startClient();
        for (const auto& [name, xml] : kChapters) testing::writeFile(folder / "docs" / name, xml);
        testing::writeFile(folder / "docs" / "manual.book", kBook);
        const int chapters = command.book ? 2 : 1;
        for (int i = 0; i < chapters; ++i)
            documents.push_back(host.open(hostPath(folder / "docs" / kChapters[i][0]), OpenParams{}));
        if (command.book) host.open(hostPath(folder / "docs" / "manual.book"), OpenParams{});
        if (command.colourFirst != 0) run(command.colourFirst);
        user.clearTranscript();
    }

    // Runs a menu command as a user does: OK in the active scheme dialog, Yes
    // to the question about format overrides.
    void run(int number) {
        if (number == 6 || number == 7) user.onDialog(kSchemeDialog, [](headless::DialogUser& d) { d.press(kOk); });
        if ((number == 20 || number == 21) && state().overrideWarningPending) user.answerYes();
        host.invokeCommand(number);
    }

    // Empty when each document holds what the other world's does, else the first difference.
    std::string differenceFrom(FaultWorld& other) {
        for (std::size_t i = 0; i < documents.size(); ++i) {
            const std::string difference =
                test::firstDifference(*host.document(documents[i]), *other.host.document(other.documents[i]));
            if (!difference.empty()) return host.title(documents[i]) + ": " + difference;
        }
        return "";
    }

    // Every document the host holds saves in the full form and loads back as it was.
    void expectDocumentsSaveAndLoad() {
        testing::TempFolder scratch;
        for (Handle doc = host.firstOpenDocument(); doc != kNoObject; doc = host.nextOpenDocument(doc)) {
            const std::string file = (scratch / "saved.xml").string();
            const headless::SaveResult saved =
                headless::saveDocument(*host.document(doc), file, headless::SaveForm::Full);
            ASSERT_TRUE(saved.ok) << host.path(doc) << ": " << saved.error;
            headless::LoadResult loaded = headless::loadFile(file);
            ASSERT_TRUE(loaded.document) << host.path(doc) << ": " << loaded.error;
            // The form a document was read in goes with its file, not with what it holds.
            loaded.document->contentForm = host.document(doc)->contentForm;
            EXPECT_EQ(test::firstDifference(*loaded.document, *host.document(doc)), "") << host.path(doc);
        }
    }

    std::vector<Handle> documents;
};

// Each file is as it was or a whole new version; none is lost, no temporary is left.
void expectFilesWhole(const Files& before, const Files& after) {
    for (const auto& [path, bytes] : before) EXPECT_TRUE(after.contains(path)) << path << " is gone";
    for (const auto& [path, bytes] : after) {
        EXPECT_EQ(path.filename().string().find(".voka-"), std::string::npos) << "temporary file left: " << path;
        const auto old = before.find(path);
        if (old != before.end() && old->second == bytes) continue;
        const headless::LoadResult loaded = headless::loadFile(path.string());
        EXPECT_TRUE(loaded.document || loaded.book) << path << " was rewritten and does not load: " << loaded.error;
    }
}

TEST(ColoringFaults, ARefusedChangeLeavesWholeDocumentsAndFiles) {
    const Command commands[] = {
        {"Color Document", 6, 0, false, true},
        {"Color Book", 7, 0, true, true},
        {"Uncolor Document", 20, 6, false, false},
        {"Uncolor Book", 21, 7, true, false},
    };
    for (const Command& command : commands) {
        SCOPED_TRACE(command.what);
        // A clean run tells how many changes there are and what success looks like.
        FaultWorld clean(command), untouched(command);
        ASSERT_TRUE(clean.plugin.started());
        clean.host.failAt(0);
        clean.run(command.number);
        ASSERT_EQ(clean.state().lastCommandResult, 1);
        ASSERT_NE(clean.differenceFrom(untouched), "") << "the command changed nothing, so no failure could show";
        const int calls = clean.host.mutatingCalls();
        // Every call is tried: a few dozen runs take well under a second with the sanitizers.
        for (int n = 1; n <= calls; ++n) {
            FaultWorld world(command);
            const Files before = filesUnder(world.folder.path());
            world.host.failAt(n);
            world.run(command.number);
            SCOPED_TRACE("call " + std::to_string(n) + " of " + std::to_string(calls) + " fails: " +
                         world.host.failedCall());
            ASSERT_NE(world.host.failedCall(), "") << "the run took another path before the chosen call";

            // The colouring commands ignore a text property or a definitions
            // refresh the host refuses, as the desktop product does, and report
            // success; any other refusal must not pass for one.
            const bool ignoredByDesign =
                world.host.failedCall() == "setTextProperty" || world.host.failedCall() == "importElementDefinitions";
            if (ignoredByDesign) {
                EXPECT_EQ(world.state().lastCommandResult, 1) << "a refused property must not stop the colouring";
            } else if (world.state().lastCommandResult == 1) {
                EXPECT_EQ(world.differenceFrom(clean), "") << "success reported, but not the documents of a clean run";
            } else if (command.interactive) {
                EXPECT_FALSE(world.shown().empty() || world.shown() == clean.shown())
                    << "failure " << world.state().lastCommandResult << " not told to the user";
            }
            expectFilesWhole(before, filesUnder(world.folder.path()));
            world.expectDocumentsSaveAndLoad();
        }
    }
}

}  // namespace
}  // namespace voka
