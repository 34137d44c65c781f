#include "host/headless/persist/BookFile.h"

#include <algorithm>
#include <filesystem>

namespace voka::headless {

namespace {

std::filesystem::path folderOf(const std::string& bookPath) {
    return std::filesystem::absolute(std::filesystem::path(bookPath)).lexically_normal().parent_path();
}

class BookLoader final : public ParseHandler {
public:
    BookLoader(Book& book, const std::string& bookPath) : book_(book), folder_(folderOf(bookPath)) {}

    void startElement(ParseContext& context, const StartTag& tag) override {
        ++depth_;
        const std::string name = tag.qualifiedName();
        if (depth_ == 1) return;  // voka-book
        if (depth_ != 2 || name != "component") {
            if (depth_ == 2) context.warn("ignored unknown element <" + name + ">");
            return;
        }
        std::string_view path;
        if (!tag.find("path", path) || path.empty()) {
            context.fail("<component> needs a path");
            return;
        }
        std::filesystem::path file(path);
        if (file.is_relative()) file = folder_ / file;
        BookComponent component;
        component.path = file.lexically_normal().string();
        std::string_view user;
        if (tag.find("user-string", user)) component.userString = user;
        component.handleId = book_.nextComponentId++;
        book_.components.push_back(std::move(component));
    }

    void endElement(ParseContext&) override { --depth_; }
    void characters(ParseContext&, std::string_view) override {}

private:
    Book& book_;
    std::filesystem::path folder_;
    int depth_ = 0;
};

}  // namespace

std::unique_ptr<ParseHandler> makeBookLoader(Book& book, const std::string& bookPath) {
    return std::make_unique<BookLoader>(book, bookPath);
}

void writeBook(XmlOut& out, const Book& book, const std::string& bookPath) {
    const std::filesystem::path folder = folderOf(bookPath);
    // The generator says voka wrote the file, so that voka may replace it; a book written by hand has none.
    out.raw("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<voka-book version=\"1\" generator=\"voka\">\n");
    for (const BookComponent& component : book.components) {
        if (!component.alive || component.path.empty()) continue;
        // The host keeps component paths in its own notation; a backslash is
        // never part of a file name on disk, so it is a separator here.
        std::string posix = component.path;
        std::replace(posix.begin(), posix.end(), '\\', '/');
        std::filesystem::path file = std::filesystem::absolute(posix).lexically_normal();
        std::filesystem::path relative = file.lexically_relative(folder);
        const bool inside = !relative.empty() && *relative.begin() != "..";
        out.raw("  <component");
        out.attribute("path", std::string_view(inside ? relative.string() : file.string()));
        if (!component.userString.empty()) out.attribute("user-string", std::string_view(component.userString));
        out.raw("/>\n");
    }
    out.raw("</voka-book>\n");
}

}  // namespace voka::headless
