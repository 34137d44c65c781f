// voka on hostile or awkward input and output folders, as a user and an
// attacker would try it: every exit code, nothing read from outside the
// document's folder, nothing of the user's overwritten, outputs that never
// collide, pages that run no script, and a cancel that leaves no debris.
#include "Cli.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace voka::test {
namespace {
namespace fs = std::filesystem;

constexpr const char* kSecret = "TOP-SECRET-4711";

std::string chapter(const std::string& body) {
    return "<?xml version=\"1.0\"?>\n<chapter><title>T</title><p audience=\"novice\">" + body + "</p></chapter>\n";
}

class DependableRuns : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ("", installHome(home)); }
    std::string settings() const { return home + "/Brindel/BR_Settings.fm"; }
    ScratchFolder scratch;
    const std::string home = scratch / "home", in = scratch / "in", out = scratch / "out";
};

TEST_F(DependableRuns, EveryExitCodeAsReadmeSaysAndNothingLeaksOrIsLost) {
    struct Case {
        const char* name;
        std::function<void(const std::string& in)> prepare;
        std::vector<std::string> args;  // @IN@ and @OUT@ stand for the folders
        int exit;
        const char* said;  // on standard error
    };
    auto files = [](std::vector<std::pair<std::string, std::string>> list) {
        return [list](const std::string& in) {
            for (const auto& [name, content] : list) {
                fs::create_directories(fs::path(in + "/" + name).parent_path());
                writeFile(in + "/" + name, content);
            }
        };
    };
    std::string amplified = "<!DOCTYPE d [<!ENTITY a \"" + std::string(50000, 'x') + "\">]><d>";
    for (int i = 0; i < 400; ++i) amplified += "&a;";
    std::string deep;
    for (int i = 0; i < 10001; ++i) deep += "<e>";
    const Case cases[] = {
        {"done", files({{"ch.xml", chapter("fine")}}), {"color", "@IN@/ch.xml", "--out", "@OUT@"}, 0, ""},
        {"a menu command not built yet", files({}), {"command", "vkp_SchemeEditor"}, 1, "is not in this version of the plug-in yet"},
        {"an unknown option", files({}), {"color", "--colour", "red"}, 2, "The following argument was not expected"},
        {"a missing option value", files({}), {"color", "--out"}, 2, "--out: 1 required"},
        {"an output over its own input", files({{"page.html", chapter("mine")}}), {"color", "@IN@/page.html", "--out", "@IN@"}, 2,
         "page.html: it is one of the inputs"},
        {"an index voka did not write", files({{"ch.xml", chapter("x")}, {"index.html", "<p>my own page</p>"}}),
         {"color", "@IN@/ch.xml", "--form", "full", "--out", "@IN@"}, 2, "index.html: voka did not write it"},
        {"a document over itself", files({{"ch.xml", chapter("x")}}), {"color", "@IN@/ch.xml", "--out", "@IN@"}, 2,
         "ch.xml: it is one of the inputs"},
        {"a link planted in the output folder",
         [](const std::string& in) {
             writeFile(in + "/ch.xml", chapter("x"));
             fs::create_directories(in + "/out");
             fs::create_symlink(in + "/../secret.txt", in + "/out/ch.html");
         },
         {"color", "@IN@/ch.xml", "--out", "@IN@/out"}, 2, "ch.html: it is a symbolic link"},
        {"settings the plug-in cannot read", [this](const std::string&) { writeFile(settings(), "not XML"); }, {"menus"}, 3,
         "the plug-in did not start"},
        {"a missing file", files({}), {"color", "@IN@/none.xml"}, 4, "none.xml: no such file"},
        {"a folder", files({{"dir/x", ""}}), {"info", "@IN@/dir"}, 4, "it is a folder"},
        {"a book with a missing chapter, info",
         files({{"b.book", "<voka-book version=\"1\"><component path=\"gone.xml\"/></voka-book>"}}), {"info", "@IN@/b.book"}, 4,
         "cannot open the book's chapter"},
        {"a book with a malformed chapter, color",
         files({{"b.book", "<voka-book version=\"1\"><component path=\"bad.xml\"/><component path=\"ok.xml\"/></voka-book>"},
                {"bad.xml", "<a>"}, {"ok.xml", chapter("ok")}}),
         {"--yes", "color", "@IN@/b.book", "--out", "@OUT@"}, 4, "cannot open the book's chapter"},
        {"a parameter entity reaching outside",
         files({{"sub/evil.dtd", "<!ENTITY % f SYSTEM \"../../secret.txt\">\n<!ENTITY % e \"<!ENTITY leak '%f;'>\">\n%e;\n"},
                {"sub/ch.xml", "<!DOCTYPE chapter SYSTEM \"evil.dtd\">\n<chapter>&leak;</chapter>"}}),
         {"color", "@IN@/sub/ch.xml", "--out", "@OUT@"}, 4, "is not read"},
        {"entities expanding a small file", files({{"ch.xml", amplified + "</d>"}}), {"color", "@IN@/ch.xml"}, 4,
         "the limit on entity expansion"},
        {"nesting past the limit", files({{"ch.xml", deep}}), {"color", "@IN@/ch.xml"}, 4,
         "the limit on element depth"},
    };
    const std::string goodSettings = readFile(settings());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        writeFile(settings(), goodSettings);
        fs::remove_all(in);
        fs::remove_all(out);
        fs::create_directories(in);
        writeFile(scratch / "secret.txt", kSecret);
        c.prepare(in);
        const auto before = snapshot(in);
        std::vector<std::string> args;
        for (std::string arg : c.args) {
            if (arg.rfind("@IN@", 0) == 0) arg = in + arg.substr(4);
            if (arg == "@OUT@") arg = out;
            args.push_back(arg);
        }
        RunOptions options;
        options.workingDirectory = scratch.path;
        ProcessResult run = runVoka(home, args, options);
        EXPECT_EQ(c.exit, run.exitCode) << run.err;
        EXPECT_NE(run.err.find(c.said), std::string::npos) << run.err;
        EXPECT_EQ(run.out.find(kSecret), std::string::npos);
        EXPECT_EQ(run.err.find(kSecret), std::string::npos);
        for (const auto& [name, content] : snapshot(scratch.path)) {
            if (name.rfind("home/", 0) != 0 && name != "secret.txt") {
                EXPECT_EQ(content.find(kSecret), std::string::npos) << name << " holds the secret";
            }
        }
        // Inputs stay as they were, whatever the run did.
        for (const auto& [name, content] : before) {
            const std::string now = fs::is_symlink(in + "/" + name) ? content : readFile(in + "/" + name);
            EXPECT_EQ(content, now) << name << " changed";
        }
        EXPECT_EQ(fileListing(scratch.path).find(".voka-"), std::string::npos) << "a temporary file is left";
    }
}

// What people type: a bare voka, --version, options after the subcommand and
// their short forms, no per-user folder to be had, a warning for many files.
TEST_F(DependableRuns, CommandLineHabits) {
    fs::create_directories(in);
    std::string book = "<voka-book version=\"1\">";
    for (const char* name : {"a.xml", "b.xml", "c.xml"}) {
        writeFile(in + "/" + name, "<?xml version=\"1.0\"?>\n<!DOCTYPE chapter SYSTEM \"gone.dtd\">\n<chapter><p>x</p></chapter>\n");
        book += std::string("<component path=\"") + name + "\"/>";
    }
    writeFile(in + "/b.book", book + "</voka-book>");
    fs::create_directories(in + "/sub");
    writeFile(in + "/sub/a.xml", "<chapter><p>y</p></chapter>\n");
    const std::string fresh = scratch / "fresh";
    fs::create_directories(fresh);
    struct Case {
        const char* name;
        std::vector<std::string> argv;
        int exit;
        std::string out, err;  // each a part of what is printed
        std::string notErr = "\x01";  // what must not be printed
    } cases[] = {
        {"a bare voka", {VOKA_EXE}, 2, "Usage: voka [OPTIONS] SUBCOMMAND", ""},
        {"the version", {VOKA_EXE, "--version"}, 0, "voka 1.", ""},
        {"options after the subcommand, short", {VOKA_EXE, "color", in + "/a.xml", "-o", out, "-q", "--home", home}, 0,
         out + "/a.html", ""},
        {"no folder for the settings", {"/usr/bin/env", "-u", "HOME", "-u", "XDG_CONFIG_HOME", VOKA_EXE, "menus"}, 3, "",
         "name one with --home DIR"},
        {"one warning for three files", {VOKA_EXE, "--home", home, "-q", "info", in + "/b.book"}, 0, "",
         "the same for 2 more files: the DTD \"gone.dtd\" could not be read"},
        {"quiet keeps warnings, drops notes", {VOKA_EXE, "--home", fresh, "-q", "color", in + "/b.book", "-o", out}, 0,
         out + "/c.html", "gone.dtd", "Welcome"},
        {"several files, one index", {VOKA_EXE, "--home", home, "color", in + "/a.xml", in + "/c.xml", "-o", out}, 0,
         out + "/c.xml\n" + out + "/c.html\n" + out + "/index.html\n", ""},
        {"two files of one name filtered side by side",
         {VOKA_EXE, "--home", home, "filter", "--type", "duplicate", in + "/a.xml", in + "/sub/a.xml", "-o", out + "-f"}, 2,
         "", "two of the files given would both write " + out + "-f/a.xml"},
        {"a separator of letters", {VOKA_EXE, "--home", home, "--value-separator", "os=x", "info", in + "/a.xml"}, 2, "",
         "expected ATTR=C"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RunOptions options;
        options.workingDirectory = in;
        const ProcessResult run = runProcess(c.argv, options);
        EXPECT_EQ(c.exit, run.exitCode) << run.err;
        EXPECT_NE(std::string::npos, run.out.find(c.out)) << run.out;
        EXPECT_NE(std::string::npos, run.err.find(c.err)) << run.err;
        EXPECT_EQ(std::string::npos, run.err.find(c.notErr)) << run.err;
        std::size_t said = 0;
        for (std::size_t at = run.err.find("gone.dtd"); at != std::string::npos; at = run.err.find("gone.dtd", at + 1)) ++said;
        EXPECT_LE(said, 2u) << "a warning is printed once, then counted";
    }
    EXPECT_FALSE(fs::exists(in + "/.voka")) << "voka writes no settings into the working folder";
    const std::string index = readFile(out + "/index.html");
    EXPECT_NE(index.find("href=\"a.html\""), std::string::npos) << "one index for every file: " << index;

    // Every command --help lists is in the manual page and completes in bash.
    const std::string help = runProcess({VOKA_EXE, "--help"}).out;
    const std::string manual = readFile(sourceDirectory() + "/docs/voka.1");
    const std::string script = readFile(sourceDirectory() + "/scripts/voka-completion.bash");
    const std::size_t from = script.find("commands=\"") + 10;
    const std::string completion = " " + script.substr(from, script.find('"', from) - from) + " ";
    const std::size_t listed = help.find("Subcommands:");
    ASSERT_NE(listed, std::string::npos) << help;
    std::istringstream lines(help.substr(listed));
    int commands = 0;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string command;
        if (line.rfind("  ", 0) != 0 || !(words >> command)) continue;
        SCOPED_TRACE(command);
        ++commands;
        std::string roff;  // a hyphen in a manual page is "\-"
        for (char ch : command) roff += ch == '-' ? std::string("\\-") : std::string(1, ch);
        EXPECT_NE(manual.find("\\fB" + roff + "\\fR"), std::string::npos) << "voka.1 describes it";
        EXPECT_NE(completion.find(" " + command + " "), std::string::npos) << "bash completes it";
    }
    EXPECT_GE(commands, 13);
}

TEST_F(DependableRuns, ChaptersOfTheSameNameEachKeepTheirPage) {
    fs::create_directories(in + "/a");
    fs::create_directories(in + "/b");
    writeFile(in + "/a/ch.xml", chapter("first"));
    writeFile(in + "/b/ch.xml", chapter("second"));
    writeFile(in + "/index.xml", chapter("third"));
    writeFile(in + "/ch.dita", chapter("fourth"));
    writeFile(in + "/ch.xml", chapter("fifth"));
    writeFile(in + "/book.book",
              "<voka-book version=\"1\"><component path=\"a/ch.xml\"/><component path=\"b/ch.xml\"/>"
              "<component path=\"index.xml\"/><component path=\"ch.dita\"/><component path=\"ch.xml\"/></voka-book>");
    ProcessResult run = runVoka(home, {"color", in + "/book.book", "--out", out});
    ASSERT_EQ(0, run.exitCode) << run.err;
    // In book order, the first of two alike takes the short name.
    EXPECT_EQ("a/ch.html\na/ch.xml\nb/ch.html\nb/ch.xml\nch.dita\nch.html\nch.xml\nch.xml.html\n"
              "index.html\nindex.xml\nindex.xml.html\n",
              fileListing(out));
    const std::pair<const char*, const char*> pages[] = {
        {"a/ch.html", "first"}, {"b/ch.html", "second"}, {"index.xml.html", "third"}, {"ch.html", "fourth"}, {"ch.xml.html", "fifth"}};
    const std::string index = readFile(out + "/index.html");
    for (const auto& [page, text] : pages) {
        EXPECT_NE(readFile(out + "/" + page).find(text), std::string::npos) << page;
        EXPECT_NE(index.find("href=\"" + std::string(page) + "\""), std::string::npos) << page;
    }
    // A second run replaces what the first wrote.
    EXPECT_EQ(0, runVoka(home, {"color", in + "/book.book", "--out", out}).exitCode);
}

TEST_F(DependableRuns, PagesEscapeWhatDocumentsAndFileNamesSay) {
    fs::create_directories(in);
    const std::string name = in + "/<img src=x onerror=alert(1)>.xml";
    writeFile(name, "<?xml version=\"1.0\"?>\n<chapter audience=\"novice\">"
                    "<p audience=\"novice\">&lt;script&gt;alert(2)&lt;/script&gt;</p></chapter>\n"
                    "<?voka-color name=\"Red\" rgb=\"red;}&lt;/style&gt;&lt;script&gt;alert(3)&lt;/script&gt;\"?>\n");
    ProcessResult run = runVoka(home, {"color", name, "--out", out});
    ASSERT_EQ(0, run.exitCode) << run.err;
    for (const std::string& page : {out + "/<img src=x onerror=alert(1)>.html", out + "/index.html"}) {
        SCOPED_TRACE(page);
        const std::string html = readFile(page);
        EXPECT_NE(html.find("Content-Security-Policy"), std::string::npos);
        EXPECT_EQ(html.find("<script"), std::string::npos);
        EXPECT_EQ(html.find("<img"), std::string::npos);
        EXPECT_EQ(html.find("alert(3)"), std::string::npos) << "a colour that is no colour is left out";
    }
    EXPECT_NE(readFile(out + "/index.html").find("href=\"%3Cimg%20src%3Dx%20onerror%3Dalert%281%29%3E.html\""), std::string::npos);
}

TEST_F(DependableRuns, AChainAsDeepAsTheLimitIsColouredAndRendered) {
    fs::create_directories(in);
    std::string deep;
    for (int i = 0; i < 10000; ++i) deep += "<e audience=\"novice\">";
    deep += "bottom";
    for (int i = 0; i < 10000; ++i) deep += "</e>";
    writeFile(in + "/deep.xml", deep);
    ProcessResult run = runVoka(home, {"color", in + "/deep.xml", "--out", out});
    ASSERT_EQ(0, run.exitCode) << run.err;
    const std::string page = readFile(out + "/deep.html");
    EXPECT_NE(page.find("bottom"), std::string::npos);
    EXPECT_EQ(page.substr(page.size() - 15), "</body></html>\n");
}

// Ctrl-C or a CI's SIGTERM while voka works: it stops, says why, exits 5,
// and leaves no temporary or half-written file (nor the folder a duplicate
// book moves through).
TEST_F(DependableRuns, ASignalCancelsAndLeavesNothingHalfWritten) {
    fs::create_directories(in);
    std::string big = "<?xml version=\"1.0\"?>\n<chapter>";
    for (int i = 0; i < 60000; ++i) big += "<p audience=\"novice expert\">text " + std::to_string(i) + "</p>";
    writeFile(in + "/big.xml", big + "</chapter>\n");
    writeFile(in + "/big.book", "<voka-book version=\"1\"><component path=\"big.xml\"/></voka-book>");
    const std::vector<std::vector<std::string>> commands = {
        {"color", in + "/big.xml"},
        {"filter", in + "/big.book", "--type", "duplicate", "--scheme", "Novice on Windows"},
    };
    for (const std::vector<std::string>& command : commands)
    for (int signal : {SIGINT, SIGTERM}) {
        SCOPED_TRACE(command.front() + " " + std::to_string(signal));
        fs::remove_all(out);
        const std::string errors = scratch / "stderr.txt";
        fs::remove(errors);  // what the last run said must not count for this one
        std::vector<std::string> args{VOKA_EXE, "--home", home, "--progress"};
        args.insert(args.end(), command.begin(), command.end());
        args.insert(args.end(), {"--out", out});
        std::vector<char*> argv;
        for (std::string& arg : args) argv.push_back(arg.data());
        argv.push_back(nullptr);
        const pid_t pid = fork();
        if (pid == 0) {
            int fd = ::open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            ::dup2(fd, 2);
            ::dup2(::open("/dev/null", O_WRONLY), 1);
            ::execv(VOKA_EXE, argv.data());
            ::_exit(127);
        }
        // The first progress line says the plug-in is up and the handlers are in place.
        for (int wait = 0; wait < 3000 && readFile(errors).find("voka: ") == std::string::npos; ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        ::kill(pid, signal);
        int status = 0;
        ::waitpid(pid, &status, 0);
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(5, WEXITSTATUS(status)) << readFile(errors);
        std::string written;
        std::error_code ec;
        for (auto it = fs::recursive_directory_iterator(out, ec); !ec && it != fs::recursive_directory_iterator(); ++it)
            written += fs::relative(it->path(), out).string() + "\n";
        EXPECT_EQ(written.find(".voka-"), std::string::npos) << written;
        EXPECT_EQ(written.find("index.html"), std::string::npos) << "an index is written only when every page is";
        EXPECT_EQ(written.find(".book"), std::string::npos) << "a book file is written only when every chapter is";
        if (written.find("big.html") != std::string::npos) {
            const std::string page = readFile(out + "/big.html");
            EXPECT_EQ(page.substr(page.size() - 15), "</body></html>\n");
        }
    }
}

}  // namespace
}  // namespace voka::test
