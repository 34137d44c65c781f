// voka: the VOKA plug-in on the headless host, from the command line.
#include "cli/CallCommands.h"
#include "cli/Commands.h"
#include "cli/DitavalImport.h"
#include "cli/EditCommand.h"
#include "cli/FilterCommands.h"
#include "cli/MigrateCommand.h"
#include "cli/Home.h"
#include "cli/SchemeChoice.h"
#include "cli/SettingsCommands.h"
#include "cli/ValidateCommand.h"
#include "cli/Session.h"

#include <CLI/CLI.hpp>

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <map>
#include <iostream>

namespace {

using voka::cli::ExitCode;
using voka::cli::schemeChoice;
using voka::headless::DialogScript;

#ifndef VOKA_VERSION
#define VOKA_VERSION "unknown"
#endif

// Every output is written and closed by now: the process ends without
// freeing a model of a million elements piece by piece. Sanitizer builds
// tear down as usual, so that a leak still shows.
void finish(int code) {
    std::cout.flush();
    std::cerr.flush();
#if !defined(__SANITIZE_ADDRESS__)
    std::_Exit(code);
#else
    (void)code;
#endif
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"voka: colour, filter and validate structured documents and books by their elements' attribute "
                 "values, with the VOKA plug-in running on a headless host."};
    app.footer("Exit codes: 0 done, 1 the plug-in refused or failed (or has no such command yet), 2 bad command "
               "line or an output voka may not write, 3 the plug-in could not start (its messages say why), 4 a file "
               "could not be opened or read (a book's chapter too), 5 cancelled (a question answered No, Ctrl-C, "
               "SIGTERM). Outputs go under --out at each input's path relative to the book's folder; voka never "
               "writes over an input, a file it did not write, or through a symbolic link.");
    app.name("voka");
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("voka ") + VOKA_VERSION);
    // Global options may come after the subcommand too, as people type them.
    app.fallthrough();
    voka::cli::SessionOptions options;
    app.add_option("--home", options.home,
                   "Per-user folder (the host session directory); default $XDG_CONFIG_HOME/voka or "
                   "~/.config/voka, created and set up on first use. A folder given here must exist.");
    app.add_flag("-y,--yes", options.yes, "Answer Yes to the plug-in's questions (default: No)");
    app.add_flag("-q,--quiet", options.quiet,
                 "Print only errors, warnings and questions on standard error: no progress, no notes that all went well");
    std::vector<std::string> separators;
    app.add_option("--value-separator", separators,
                   "ATTR=C: the values of attribute ATTR are several, separated by the character C (DocBook's "
                   "profiling attributes take ';' already); ATTR= reads its value as one. Repeatable")
        ->type_name("ATTR=C");
    app.add_flag("--progress", options.progress,
                 "Progress lines (the file, elements done of all, elements a second) even when standard error is not a "
                 "terminal; on a terminal they are shown anyway");

    auto* menus = app.add_subcommand("menus", "List the plug-in's menus and commands, per host menu");

    auto* command = app.add_subcommand("command", "Run one of the plug-in's menu commands by its tag");
    std::string tag, commandFile;
    command->add_option("TAG", tag, "Command tag, e.g. vkp_VOKAHelpAbout ('voka menus' lists them)")->required();
    command->add_option("FILE", commandFile, "Document or book to open first");
    std::vector<std::string> dialogScripts;
    command->add_option("--dialog", dialogScripts,
                        "Actions for a modal dialog: NAME:text:ITEM=TEXT,state:ITEM=N,double:ITEM=N,press:ITEM "
                        "(repeatable; unanswered dialogs are cancelled)");

    voka::cli::ColorRequest colorRequest;
    auto* color = app.add_subcommand("color", "Colour documents and books with a coloring scheme and write each "
                                              "coloured document, in its own form, and its HTML picture");
    color->add_option("FILE", colorRequest.files,
                      "XML documents, books, DITA maps or XInclude books, each in turn (default: the bundled example book)");
    color->add_option("--category", colorRequest.category, "Scheme category (default: the active one)");
    color->add_option("--scheme", colorRequest.scheme, "Coloring scheme (default: the active one)");
    color->add_option("-o,--out", colorRequest.outDir,
                      "Output folder (each document at its path relative to the inputs' common folder, under its own "
                      "name, with its picture NAME.html and an index.html)")
        ->capture_default_str();
    color->add_option("--form", colorRequest.fullForm,
                      "own: each document in its own vocabulary, the colouring kept as processing instructions "
                      "(default); full: the host's full form, NAME.voka.xml")
        ->transform(CLI::CheckedTransformer(std::map<std::string, bool>{{"own", false}, {"full", true}}));

    voka::cli::ColorRequest uncolorRequest;
    uncolorRequest.uncolor = true;
    auto* uncolor = app.add_subcommand("uncolor", "Remove all colouring (every format override) from documents "
                                                  "and books and write the result");
    uncolor->add_option("FILE", uncolorRequest.files, "XML documents or books, each in turn (default: the bundled example book)");
    uncolor->add_option("--category", uncolorRequest.category,
                        "Scheme category to make active first (uncolouring needs an active coloring scheme)");
    uncolor->add_option("--scheme", uncolorRequest.scheme, "Coloring scheme to make active first");
    uncolor->add_option("-o,--out", uncolorRequest.outDir, "Output folder")->capture_default_str();
    uncolor->add_option("--form", uncolorRequest.fullForm, "own (default) or full, as for color")
        ->transform(CLI::CheckedTransformer(std::map<std::string, bool>{{"own", false}, {"full", true}}));

    voka::cli::FilterRequest filterRequest;
    auto* filter = app.add_subcommand(
        "filter", "Filter a document or a book with a filter scheme: a duplicate filter writes the kept content in "
                  "its own vocabulary (and a new book file); a source filter hides what fails under the condition "
                  "\"Hidden\" and writes the full form and its HTML rendering");
    filter->add_option("FILE", filterRequest.files, "XML documents or books, each in turn (default: the bundled example book)");
    filter->add_option("--category", filterRequest.category, "Scheme category (default: the active one)");
    filter->add_option("--scheme", filterRequest.scheme, "Filter scheme (default: the active one)");
    filter->add_option("--type", filterRequest.type, "source or duplicate (default: the preference)")
        ->check(CLI::IsMember({"source", "duplicate"}));
    filter->add_flag("--remove-coloring", filterRequest.removeColoring, "Remove the colouring as well");
    filter->add_option("-o,--out", filterRequest.outDir,
                       "Output folder (a duplicate book's files side by side in it; source outputs at each input's "
                       "path relative to the book's folder)")
        ->capture_default_str();

    std::vector<std::string> restoreFiles;
    std::string restoreOut = "voka-out";
    auto* restore = app.add_subcommand("restore", "Show everything a source filter hid in a document or a book again "
                                                  "and write the result");
    restore->add_option("FILE", restoreFiles, "Documents or books that a source filter hid content in")->required();
    restore->add_option("-o,--out", restoreOut, "Output folder")->capture_default_str();

    voka::cli::ValidateRequest validateRequest;
    std::string validateFormat = "text";
    auto* validate = app.add_subcommand(
        "validate", "Validate documents and books with a validation scheme: print each finding (FILE:LINE:COLUMN: ...) "
                    "and write the report with pictures of the files it links into; exit 1 when there are findings");
    validate->add_option("FILE", validateRequest.files, "XML documents or book files (default: the bundled example book)");
    validate->add_option("--category", validateRequest.category, "Scheme category (default: the active one)");
    validate->add_option("--scheme", validateRequest.scheme, "Validation scheme (default: the active one)");
    validate->add_option("-o,--out", validateRequest.outDir, "Output folder for the report")->capture_default_str();
    validate->add_option("--format", validateFormat, "How findings are printed: text, json, sarif or junit")
        ->check(CLI::IsMember({"text", "json", "sarif", "junit"}))
        ->capture_default_str();

    voka::cli::CallRequest callRequest;
    auto* call = app.add_subcommand(
        "call", "Send text commands to the plug-in as another client of the host would, and print each result code");
    call->add_option("MESSAGE", callRequest.messages,
                     "Messages, e.g. 'SetScheme---C---Software---By audience'; - reads them from standard input, "
                     "one a line (# starts a comment)")
        ->required();
    call->add_option("--open", callRequest.open, "Document or book to open first (repeatable)");
    call->add_option("--delimiter", callRequest.delimiter, "Delimiter of the messages (default: the preference, ---)");
    call->add_option("-o,--out", callRequest.outDir,
                     "Write the documents the commands changed here, as voka color does (default: write nothing)");

    std::string idsFile;
    auto* ids = app.add_subcommand("ids", "Print the ids of a document's elements (tag, line:column, place) for voka call");
    ids->add_option("FILE", idsFile, "Document or book")->required();

    std::string schemesCategory, settingsFile;
    auto* schemes = app.add_subcommand("schemes", "List the categories of the main settings (the per-user local copy) "
                                                  "and in each its coloring, filter and validation schemes");
    schemes->add_option("--category", schemesCategory, "Only this category");
    auto* checkSettingsCommand = app.add_subcommand(
        "check-settings", "Check a main settings file edited by hand: one line FILE:LINE: for each thing the plug-in "
                          "would misread; exit 1 when there is one (docs/settings.md describes the file)");
    checkSettingsCommand->add_option("FILE", settingsFile, "Main settings file (default: the per-user local copy)");

    std::string editScript;
    auto* edit = app.add_subcommand(
        "edit", "Run the plug-in's editors (Attribute Library..., Colors..., Local Preferences..., Migrate ...) "
                "through a script of user actions, one a line: command TAG, press ITEM, choose ITEM N, double ITEM N, "
                "select ITEM ENTRY, type ITEM TEXT, answer TEXT, file PATH, cancel, yes, no (docs/editing.md)");
    edit->add_option("--script", editScript, "The script file, or - for standard input")->required();

    std::string migrateFile;
    auto* migrate = app.add_subcommand(
        "migrate", "Copy the schemes of a Quorvane master settings file into a new category of the main settings (the "
                   "per-user local copy) and merge its master attribute list into the attribute library; prints the "
                   "counts. Give --yes: the plug-in asks three questions first");
    bool migrateNoAttributes = false;
    migrate->add_flag("--no-attributes", migrateNoAttributes,
                      "Leave the master attribute list out: answer No to the question about it");
    migrate->add_option("FILE", migrateFile, "Quorvane master settings file (resources/example/Quorvane_MasterSettings.fm)")
        ->required();

    std::vector<std::string> infoFiles;
    auto* info = app.add_subcommand("info", "Show what the host holds for documents and books");
    info->add_option("FILE", infoFiles, "Documents or books")->required();

    voka::cli::DitavalRequest ditavalRequest;
    auto* importDitaval = app.add_subcommand(
        "import-ditaval", "Add a filter scheme made from a DITAVAL file to the main settings (the per-user local "
                          "copy); what a filter scheme cannot express is listed as warnings");
    importDitaval->add_option("FILE", ditavalRequest.file, "DITAVAL file")->required();
    importDitaval->add_option("--category", ditavalRequest.category, "Scheme category to add it to (default: the active one)");
    importDitaval->add_option("--scheme", ditavalRequest.scheme,
                              "Name of the new filter scheme (default: the file's name without its extension)");

    // A bare voka says how it is used.
    if (argc <= 1) {
        std::cout << app.help();
        return ExitCode::kExitUsage;
    }
    // CLI11 tells a bad command line by exceptions and codes of its own; voka's is 2.
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? ExitCode::kExitOk : ExitCode::kExitUsage;
    }

    for (const std::string& text : separators) {
        const std::size_t equals = text.find('=');
        if (equals == 0 || equals == std::string::npos || text.size() > equals + 2 ||
            (text.size() == equals + 2 && (std::isalnum(static_cast<unsigned char>(text.back())) || text.back() == '"'))) {
            std::cerr << "voka: --value-separator " << text
                      << ": expected ATTR=C with one character C that is not a letter or digit, or ATTR=\n";
            return ExitCode::kExitUsage;
        }
        options.valueSeparators[text.substr(0, equals)] = text.size() == equals + 2 ? text.back() : '\0';
    }
    for (const std::string& text : dialogScripts) {
        DialogScript script;
        std::string error;
        if (!voka::headless::parseDialogScript(text, script, error)) {
            std::cerr << "voka: --dialog " << text << ": " << error << "\n";
            return ExitCode::kExitUsage;
        }
        options.batch.dialogs.push_back(script);
    }
    if (color->parsed()) options.batch.dialogs.push_back(schemeChoice(colorRequest.category, colorRequest.scheme));
    // Uncolouring asks for no scheme; one named is made active through Set Active Scheme first.
    if (uncolor->parsed() && (!uncolorRequest.category.empty() || !uncolorRequest.scheme.empty()))
        options.batch.dialogs.push_back(schemeChoice(uncolorRequest.category, uncolorRequest.scheme));
    // Uncolouring asks once whether every format override may go, restoring
    // whether to show everything again: the command says so.
    if (uncolor->parsed() || restore->parsed()) options.yes = true;

    if (checkSettingsCommand->parsed()) {
        // Checked without starting the plug-in, which a broken local copy would stop.
        std::string home = options.home.empty() ? voka::cli::defaultHome() : options.home;
        const int code = voka::cli::checkSettings(
            !settingsFile.empty() ? settingsFile : home + "/Brindel/VOKA_MainSettings_LocalCopy.fm");
        finish(code);
        return code;
    }
    std::vector<voka::headless::ConversationStep> editSteps;
    if (edit->parsed()) {
        // The whole script is read before anything runs: a script that cannot be read changes nothing.
        std::string error;
        std::ifstream file;
        if (editScript != "-") file.open(editScript);
        if (editScript != "-" && !file) {
            std::cerr << "voka: cannot read the script " << editScript << "\n";
            return ExitCode::kExitBadInput;
        }
        if (!voka::cli::parseEditScript(editScript == "-" ? std::cin : file, editSteps, error)) {
            std::cerr << "voka: " << editScript << ": " << error << "\n";
            return ExitCode::kExitUsage;
        }
    }
    voka::cli::Session session(options);
    int code = ExitCode::kExitUsage;
    if (!session.start()) code = ExitCode::kExitNoStart;
    else if (menus->parsed()) code = voka::cli::listMenus(session);
    else if (command->parsed()) code = voka::cli::runMenuCommand(session, tag, commandFile);
    else if (color->parsed()) code = voka::cli::colorFiles(session, colorRequest);
    else if (uncolor->parsed()) code = voka::cli::colorFiles(session, uncolorRequest);
    else if (filter->parsed()) code = voka::cli::filterFiles(session, filterRequest);
    else if (restore->parsed()) code = voka::cli::restoreFiles(session, restoreFiles, restoreOut);
    else if (validate->parsed()) {
        using voka::cli::FindingFormat;
        validateRequest.format = validateFormat == "json"    ? FindingFormat::Json
                                 : validateFormat == "sarif" ? FindingFormat::Sarif
                                 : validateFormat == "junit" ? FindingFormat::Junit
                                                             : FindingFormat::Text;
        code = voka::cli::validateFiles(session, validateRequest);
    }
    else if (call->parsed()) code = voka::cli::callPlugin(session, callRequest);
    else if (ids->parsed()) code = voka::cli::showIds(session, idsFile);
    else if (schemes->parsed()) code = voka::cli::listSchemes(session, schemesCategory);
    else if (info->parsed()) code = voka::cli::showInfo(session, infoFiles);
    else if (edit->parsed()) code = voka::cli::runEditScript(session, std::move(editSteps));
    else if (migrate->parsed()) code = voka::cli::migrateSiblingSettings(session, migrateFile, options.yes, !migrateNoAttributes);
    else if (importDitaval->parsed()) code = voka::cli::importDitaval(session, ditavalRequest);
    if (code != ExitCode::kExitNoStart) session.agent().printRepeatedWarnings();
    finish(code);
    return code;
}
