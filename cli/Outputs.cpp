#include "cli/Outputs.h"

#include "cli/HtmlRendering.h"
#include "host/headless/persist/AtomicFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace voka::cli {
namespace fs = std::filesystem;

namespace {

bool checkFolders(const std::string& outputFolder, const std::string& path, bool make, std::string& problem);

fs::path absoluteNormal(const std::string& path) {
    std::error_code ec;
    return fs::absolute(path, ec).lexically_normal();
}

// The deepest folder that holds every input.
fs::path commonFolder(const std::vector<PlannedInput>& inputs) {
    fs::path common;
    for (const PlannedInput& input : inputs) {
        fs::path folder = absoluteNormal(input.path).parent_path();
        if (common.empty()) {
            common = folder;
            continue;
        }
        fs::path shared;
        for (auto a = common.begin(), b = folder.begin(); a != common.end() && b != folder.end() && *a == *b; ++a, ++b)
            shared /= *a;
        common = shared;
    }
    return common;
}

std::string readHead(const std::string& path, std::size_t bytes) {
    std::string head(bytes, '\0');
    int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0) return "";
    ssize_t n = ::read(fd, head.data(), head.size());
    ::close(fd);
    head.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
    return head;
}

// An existing file at an output's place may be replaced only when voka wrote it.
bool writtenByVoka(const std::string& path) {
    const std::string head = readHead(path, 2048);
    if (head.find("<voka-document") != std::string::npos || head.find(kGeneratorMark) != std::string::npos)
        return true;
    return head.find("<voka-book version=\"1\" generator=\"voka\"") != std::string::npos ||
           head.find(kContentOutputMark) != std::string::npos;
}

struct FileId {
    dev_t device;
    ino_t inode;
    bool operator<(const FileId& other) const {
        return device != other.device ? device < other.device : inode < other.inode;
    }
};

// Why `path` may not be written, or "".
std::string refusal(const std::string& outputFolder, const std::string& path, const std::set<FileId>& inputs) {
    std::string problem;
    if (!checkFolders(outputFolder, path, false, problem)) return problem;
    struct stat info {};
    if (::lstat(path.c_str(), &info) != 0) return "";
    if (S_ISLNK(info.st_mode)) return "will not write " + path + ": it is a symbolic link";
    if (inputs.count(FileId{info.st_dev, info.st_ino})) return "will not write " + path + ": it is one of the inputs";
    if (!S_ISREG(info.st_mode)) return "will not write " + path + ": something other than a file is there";
    if (!writtenByVoka(path)) return "will not replace " + path + ": voka did not write it";
    return "";
}

}  // namespace

const char* const kContentOutputMark = "<!-- written by voka -->";

namespace {

std::set<FileId> fileIdsOf(const std::vector<PlannedInput>& inputs) {
    std::set<FileId> ids;
    for (const PlannedInput& input : inputs) {
        struct stat info {};
        if (::stat(input.path.c_str(), &info) == 0) ids.insert(FileId{info.st_dev, info.st_ino});
    }
    return ids;
}

// Content outputs keep their inputs' file names, so two inputs of one name cannot both go.
void planContent(OutputPlan& plan, const std::vector<PlannedInput>& inputs) {
    const fs::path out = plan.folder;
    std::set<std::string> taken;
    for (const PlannedInput& input : inputs) {
        const fs::path file = absoluteNormal(input.path);
        const std::string place = (out / (input.outputName.empty() ? file.filename().string() : input.outputName)).string();
        if (input.doc == kNoObject) {
            plan.index = place;
        } else {
            plan.documents.push_back(DocumentOutputs{input.doc, file.string(), place, ""});
        }
        if (!taken.insert(place).second && plan.problem.empty())
            plan.problem = "two inputs are called " + file.filename().string() +
                           ", and a filtered book keeps its files side by side in one folder";
    }
}

}  // namespace

OutputPlan planOutputs(const std::string& folder, const std::vector<PlannedInput>& inputs, OutputKind kind, int reports) {
    OutputPlan plan;
    const fs::path out = absoluteNormal(folder);
    plan.folder = out.string();
    const std::set<FileId> inputIds = fileIdsOf(inputs);
    if (kind == OutputKind::Content) {
        planContent(plan, inputs);
        for (const DocumentOutputs& outputs : plan.documents)
            if (plan.problem.empty()) plan.problem = refusal(plan.folder, outputs.saved, inputIds);
        if (plan.problem.empty() && !plan.index.empty()) plan.problem = refusal(plan.folder, plan.index, inputIds);
        return plan;
    }
    plan.index = (out / "index.html").string();
    const fs::path base = commonFolder(inputs);
    std::set<std::string> taken{plan.index};
    for (int i = 0; kind == OutputKind::Report && i < reports; ++i) {
        plan.reports.push_back((out / (i == 0 ? std::string("report.voka.xml")
                                              : "report-" + std::to_string(i + 1) + ".voka.xml")).string());
        taken.insert(plan.reports.back());
    }
    for (const PlannedInput& input : inputs) {
        if (input.doc == kNoObject) continue;
        const fs::path file = absoluteNormal(input.path);
        const fs::path dir = (out / file.parent_path().lexically_relative(base)).lexically_normal();
        // A full-form copy voka wrote ("ch.voka.xml") gives its outputs the name of its own input again.
        std::string stem = file.stem().string();
        if (stem.size() > 5 && stem.ends_with(".voka") && file.extension() == ".xml") stem.resize(stem.size() - 5);
        if (stem.empty()) stem = "untitled";
        const std::string name = file.filename().string();
        // A document written in its own form keeps its own name; only its picture's name may vary.
        const bool ownName = kind == OutputKind::Documents;
        const std::string ownPlace = (dir / name).string();
        std::string chosen;
        for (int attempt = 0; chosen.empty(); ++attempt) {
            const std::string candidate = attempt == 0   ? stem
                                          : attempt == 1 ? name
                                                         : name + "-" + std::to_string(attempt);
            const std::string page = (dir / (candidate + ".html")).string();
            const std::string saved = ownName ? ownPlace : (dir / (candidate + ".voka.xml")).string();
            if (!taken.count(page) && page != saved && (ownName || !taken.count(saved))) chosen = candidate;
        }
        DocumentOutputs outputs{input.doc, file.string(),
                                ownName ? ownPlace : (dir / (chosen + ".voka.xml")).string(),
                                (dir / (chosen + ".html")).string()};
        if (taken.count(outputs.saved) && plan.problem.empty())
            plan.problem = "two outputs would be called " + outputs.saved + " (--form full names them .voka.xml)";
        taken.insert(outputs.saved);
        taken.insert(outputs.page);
        // A report's documents are pictured only: their full form is not written.
        if (kind == OutputKind::Report) outputs.saved.clear();
        plan.documents.push_back(outputs);
    }
    for (const DocumentOutputs& outputs : plan.documents)
        for (const std::string* path : {&outputs.saved, &outputs.page})
            if (plan.problem.empty() && !path->empty()) plan.problem = refusal(plan.folder, *path, inputIds);
    for (const std::string& report : plan.reports)
        if (plan.problem.empty()) plan.problem = refusal(plan.folder, report, inputIds);
    if (plan.problem.empty()) plan.problem = refusal(plan.folder, plan.index, inputIds);
    return plan;
}

bool makeFoldersFor(const std::string& outputFolder, const std::string& path, std::string& problem) {
    std::error_code ec;
    fs::create_directories(outputFolder, ec);
    return checkFolders(outputFolder, path, true, problem);
}

namespace {

// The folders between the output folder and `path`: each one there must be a
// real folder; missing ones are made when `make` says so.
bool checkFolders(const std::string& outputFolder, const std::string& path, bool make, std::string& problem) {
    const fs::path relative = fs::path(path).parent_path().lexically_relative(outputFolder);
    fs::path at = outputFolder;
    for (const fs::path& part : relative) {
        if (part == ".") continue;
        at /= part;
        struct stat info {};
        if (::lstat(at.c_str(), &info) == 0) {
            if (S_ISLNK(info.st_mode)) {
                problem = "will not write into " + at.string() + ": it is a symbolic link";
                return false;
            }
            if (!S_ISDIR(info.st_mode)) {
                problem = "cannot make the folder " + at.string() + ": a file is there";
                return false;
            }
            continue;
        }
        if (!make) return true;
        if (::mkdir(at.c_str(), 0777) != 0 && errno != EEXIST) {
            problem = "cannot make the folder " + at.string() + ": " + std::strerror(errno);
            return false;
        }
    }
    return true;
}

}  // namespace

bool writeAtomically(const std::string& path, const ContentWriter& write, std::string& problem,
                     const std::function<bool()>& keep) {
    headless::AtomicFile file;
    // Pages are made again in a moment; a crash still never leaves half of one
    // under its name, and skipping the sync spares a large page's write-back.
    file.durable = false;
    if (!headless::beginAtomicFile(path, file, problem)) return false;
    int error = 0;
    auto sink = [&](std::string_view piece) {
        while (!piece.empty() && error == 0) {
            ssize_t n = ::write(file.fd, piece.data(), piece.size());
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) error = n < 0 ? errno : EIO;
            else piece.remove_prefix(static_cast<std::size_t>(n));
        }
        return error == 0;
    };
    if (!write(sink) || error != 0) {
        headless::abandonAtomicFile(file);
        if (error != 0) problem = "cannot write " + path + ": " + std::strerror(error);
        return false;
    }
    if (keep && !keep()) {
        headless::abandonAtomicFile(file);
        return false;
    }
    return headless::commitAtomicFile(file, problem);
}

}  // namespace voka::cli
