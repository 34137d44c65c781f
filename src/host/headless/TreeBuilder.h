// A few-line way to build a document in memory, for tests and benchmarks:
//
//   TreeBuilder b;
//   b.open("Chapter", {{"audience", "novice"}}).text("Hello")
//    .leaf("Para", {{"platform", "windows linux"}}, "text").close();
//   Handle doc = b.build(host, "\\tmp\\x.xml");
//
// Tags not declared with define() become definitions of the kind the content
// form gives their tag (table, row, footnote ...; else a container), with the
// attributes used on them, of kind string, in first-seen order. An attribute
// value is one string; give a list for several values:
// {"Names", std::vector<std::string>{"Red", "Blue"}}.
#pragma once

#include "host/Host.h"
#include "host/headless/Model.h"

#include <memory>
#include <string>
#include <vector>

namespace voka::headless {

class HeadlessHost;

struct AttrValue {
    AttrValue(std::string name, std::string value) : name(std::move(name)), values{std::move(value)} {}
    AttrValue(std::string name, std::vector<std::string> values) : name(std::move(name)), values(std::move(values)) {}
    std::string name;
    std::vector<std::string> values;
};

class TreeBuilder {
public:
    TreeBuilder();

    // Declarations.
    TreeBuilder& define(const std::string& tag, int type = kElementContainer, AttributeDefinitions attributes = {});
    TreeBuilder& color(const std::string& name, const std::string& rgb);
    TreeBuilder& conditionFormat(const std::string& name, bool shown = true);

    // Content. The first flow is the main flow "A"; flow() closes what is open
    // and goes on in the named flow.
    TreeBuilder& flow(const std::string& name);
    TreeBuilder& open(const std::string& tag, std::vector<AttrValue> attributes = {});
    TreeBuilder& text(const std::string& text);
    TreeBuilder& leaf(const std::string& tag, std::vector<AttrValue> attributes = {}, const std::string& text = {});
    TreeBuilder& close();
    TreeBuilder& marker(const std::string& type, const std::string& text);
    TreeBuilder& xref(const std::string& sourceFile, const std::string& format = {});

    // The document built so far, with every element closed; the builder
    // starts afresh afterwards.
    std::unique_ptr<Document> document();
    // The document handed to the host as if opened from `path` (host notation).
    Handle build(HeadlessHost& host, const std::string& path);

private:
    Flow& currentFlow();

    std::unique_ptr<Document> doc_;
    std::uint16_t flow_ = 0;
    std::vector<Index> open_;
};

}  // namespace voka::headless
