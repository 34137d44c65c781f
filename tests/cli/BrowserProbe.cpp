#include "BrowserProbe.h"

#include "ChildProcess.h"
#include "VokaRun.h"

#include <charconv>
#include <cstring>
#include <filesystem>
#include <optional>
#include <sstream>
#include <unistd.h>

namespace voka::test {
namespace {
namespace fs = std::filesystem;

// Text is URI-encoded so that the dump needs no unescaping; the fields are
// tab-separated, one text node a line.
constexpr const char* kProbeScript = R"(<script>
(function () {
  var rendered = Array.prototype.slice.call(document.querySelectorAll('section.flow .el'));
  var walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
  var lines = [];
  for (var node = walker.nextNode(); node; node = walker.nextNode()) {
    var parent = node.parentElement;
    if (!parent.closest('section.flow') || parent.closest('.tag')) continue;
    var owner = parent.closest('.el');
    if (!owner) continue;
    var style = getComputedStyle(parent);
    lines.push([rendered.indexOf(owner), owner.getAttribute('data-tag'), encodeURIComponent(node.data),
                style.color, style.textDecorationLine, style.textDecorationStyle,
                style.borderLeftWidth].join('\t'));
  }
  var probe = document.createElement('pre');
  probe.id = 'voka-probe';
  probe.textContent = lines.join('\n');
  document.body.appendChild(probe);
})();
</script>
)";

constexpr const char* kProbeStart = "<pre id=\"voka-probe\">";

std::string percentDecoded(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned byte = 0;
        const char* hex = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() && std::from_chars(hex, hex + 2, byte, 16).ptr == hex + 2) {
            plain += static_cast<char>(byte);
            i += 2;
            continue;
        }
        plain += text[i];
    }
    return plain;
}

std::vector<std::string> fields(const std::string& line) {
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (std::size_t tab; (tab = line.find('\t', from)) != std::string::npos; from = tab + 1)
        parts.push_back(line.substr(from, tab - from));
    parts.push_back(line.substr(from));
    return parts;
}

PageProbe readProbe(const std::string& dom) {
    PageProbe probe;
    const std::size_t start = dom.find(kProbeStart);
    const std::size_t end = start == std::string::npos ? start : dom.find("</pre>", start);
    if (end == std::string::npos) {
        probe.error = "the page's DOM holds no probe output (did the script fail?)";
        return probe;
    }
    std::istringstream lines(dom.substr(start + std::strlen(kProbeStart), end - start - std::strlen(kProbeStart)));
    for (std::string line; std::getline(lines, line);) {
        std::vector<std::string> parts = fields(line);
        std::optional<Look> look = parts.size() == 7 ? lookShown(parts[3], parts[4], parts[5], parts[6]) : std::nullopt;
        int element = -1;
        if (!look || std::from_chars(parts[0].data(), parts[0].data() + parts[0].size(), element).ec != std::errc()) {
            probe.error = "unexpected probe line: " + line;
            return probe;
        }
        probe.texts.push_back({element, parts[1], percentDecoded(parts[2]), *look});
    }
    return probe;
}

RunningProcess startBrowser(const std::string& page, const std::string& folder) {
    fs::create_directories(folder);
    const std::string copy = folder + "/" + fs::path(page).filename().string();
    writeFile(copy, readFile(page) + kProbeScript);
    RunOptions options;
    options.environment = {{"HOME", folder}};  // whatever the browser keeps for the user stays in the scratch folder
    options.timeoutSeconds = 60;
    return startProcess({kChromium, "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                         "--disable-background-networking", "--disable-component-update", "--disable-sync",
                         "--user-data-dir=" + folder + "/profile", "--virtual-time-budget=5000", "--dump-dom", copy},
                        options);
}

PageProbe finishBrowser(RunningProcess& running) {
    ProcessResult run = finishProcess(running);
    if (!run.failure.empty()) return {{}, run.failure};
    if (run.timedOut) return {{}, "the browser did not finish in time"};
    if (run.exitCode != 0) return {{}, "the browser ended with " + std::to_string(run.exitCode) + ":\n" + run.err};
    return readProbe(run.out);
}

}  // namespace

const char* const kChromium = "/usr/bin/chromium";

bool chromiumAvailable() { return access(kChromium, X_OK) == 0; }

std::vector<PageProbe> probePages(const std::vector<std::string>& pages, const std::string& scratch) {
    constexpr std::size_t kAtOnce = 2;  // the machine's cores are shared
    std::vector<PageProbe> probes(pages.size());
    std::vector<RunningProcess> running(pages.size());
    for (std::size_t next = 0, done = 0; done < pages.size();) {
        while (next < pages.size() && next < done + kAtOnce) {
            running[next] = startBrowser(pages[next], scratch + "/browser-" + std::to_string(next));
            ++next;
        }
        probes[done] = finishBrowser(running[done]);
        ++done;
    }
    return probes;
}

}  // namespace voka::test
