// A copy of the page gets a small script whose result headless Chromium
// writes into the DOM and dumps: for every piece of document text, the
// element it belongs to and its computed colour and decorations; or what a
// test asks of the page.
#include "Cli.h"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <future>

namespace voka::test {

// Runs `script`, the body of a JavaScript function that returns a string, in
// headless Chromium at the end of a copy of `page` without its no-script
// policy, with a fresh profile under `folder`. What it returned; "" and
// `error` set when the browser or the script failed to give it.
std::string runInPage(const std::string& page, const std::string& script, const std::string& folder, std::string& error);

namespace {

// The probe waits until every chunk on screen is laid out (the browser does
// that a few frames after loading; at most 4 s of the 10 s the browser is
// given, so that the probe always runs), so that the page is as a reader sees it;
// its result is URI-encoded so that the dump needs no unescaping.
constexpr const char* kScriptStart = R"(<script>
(function () {
  function skipped(chunk) {
    var r = chunk.getBoundingClientRect();
    return r.bottom > 0 && r.top < innerHeight && chunk.firstElementChild &&
           !chunk.firstElementChild.checkVisibility({contentVisibilityAuto: true});
  }
  function settled(then, frames) {
    if (frames > 0 && Array.prototype.some.call(document.querySelectorAll('.k'), skipped))
      requestAnimationFrame(function () { settled(then, frames - 1); });
    else then();
  }
  settled(function () {
  var result;
  try { result = (function () {
)";
constexpr const char* kScriptEnd = R"(
  })(); } catch (e) { result = 'the script failed: ' + e; }
  var probe = document.createElement('pre');
  probe.id = 'voka-probe';
  probe.textContent = encodeURIComponent(result);
  document.body.appendChild(probe);
  }, 240);
})();
</script>
)";

// Tab-separated fields, one text node a line; its text URI-encoded.
constexpr const char* kLooksScript = R"(
  var rendered = Array.prototype.slice.call(document.querySelectorAll('section.flow [data-t]')), lines = [];
  var walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
  for (var node = walker.nextNode(); node; node = walker.nextNode()) {
    var parent = node.parentElement, owner = parent.closest('[data-t]'), style = getComputedStyle(parent);
    if (!parent.closest('section.flow') || parent.closest('.note') || !owner) continue;
    lines.push([rendered.indexOf(owner), owner.getAttribute('data-t'), encodeURIComponent(node.data), style.color,
                style.textDecorationLine, style.textDecorationStyle, style.borderLeftWidth].join('\t'));
  }
  return lines.join('\n');
)";

std::string percentDecoded(const std::string& text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char* hex = text.data() + i + 1;
        unsigned byte = 0;
        if (text[i] == '%' && i + 2 < text.size() && std::from_chars(hex, hex + 2, byte, 16).ptr == hex + 2) i += 2;
        else byte = static_cast<unsigned char>(text[i]);
        decoded += static_cast<char>(byte);
    }
    return decoded;
}

// One probe line: element, tag, text, color ("rgb(0, 0, 255)"), text-decoration-line, -style, border-left-width.
bool readLine(const std::string& line, ShownText& shown) {
    std::vector<std::string> parts(1);
    for (char c : line)
        if (c == '\t') parts.emplace_back();
        else parts.back() += c;
    if (parts.size() != 7 || std::from_chars(parts[0].data(), parts[0].data() + parts[0].size(), shown.element).ec != std::errc())
        return false;
    shown.tag = parts[1];
    shown.text = percentDecoded(parts[2]);
    int red = 0, green = 0, blue = 0;
    char close = 0, rgb[8];
    if (std::sscanf(parts[3].c_str(), "rgb(%d, %d, %d%c", &red, &green, &blue, &close) != 4 || close != ')') return false;
    std::snprintf(rgb, sizeof rgb, "#%02X%02X%02X", red & 0xFF, green & 0xFF, blue & 0xFF);
    shown.look.rgb = rgb;
    std::istringstream words(parts[4]);
    for (std::string word; words >> word;) {
        if (word == "underline") {  // the HTML rendering draws a numeric underline dotted
            const char* const styles[] = {"solid", "double", "dotted"};
            for (int kind = 1; kind <= 3; ++kind) shown.look.underline += kind * (parts[5] == styles[kind - 1]);
            if (shown.look.underline == 0) return false;
        } else if (word == "overline") shown.look.overline = true;
        else if (word == "line-through") shown.look.strikethrough = true;
        else if (word != "none") return false;
    }
    shown.look.changeBar = parts[6] != "0px";
    return true;
}

PageProbe probePage(const std::string& page, const std::string& folder) {
    PageProbe probe;
    const std::string result = runInPage(page, kLooksScript, folder, probe.error);
    if (!probe.error.empty()) return probe;
    std::istringstream lines(result);
    for (std::string line; std::getline(lines, line);)
        if (!readLine(line, probe.texts.emplace_back())) return {{}, "unexpected probe line: " + line};
    return probe;
}

}  // namespace

const char* const kChromium = "/usr/bin/chromium";

std::string runInPage(const std::string& page, const std::string& script, const std::string& folder, std::string& error) {
    std::filesystem::create_directories(folder);
    const std::string copy = folder + "/" + std::filesystem::path(page).filename().string();
    // The page forbids scripts; the copy drops that rule so that the probe may run.
    std::string text = readFile(page);
    if (auto policy = text.find("<meta http-equiv=\"Content-Security-Policy\""); policy != std::string::npos)
        text.erase(policy, text.find('>', policy) + 1 - policy);
    writeFile(copy, text + kScriptStart + script + kScriptEnd);
    RunOptions options;
    options.home = folder;  // what the browser keeps stays in the scratch folder
    options.timeoutSeconds = 60;
    ProcessResult run = runProcess(
        // Frames are drawn within the virtual time, so the probe's wait for them ends before the dump.
        {kChromium, "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         "--user-data-dir=" + folder + "/profile", "--window-size=1280,1024", "--virtual-time-budget=10000", "--run-all-compositor-stages-before-draw",
         "--dump-dom", copy},
        options);
    if (!run.failure.empty() || run.exitCode != 0) {
        error = "the browser ended with " + std::to_string(run.exitCode) + " " + run.failure + ":\n" + run.err;
        return "";
    }
    const std::string start = "<pre id=\"voka-probe\">";
    const std::size_t from = run.out.find(start), end = from == std::string::npos ? from : run.out.find("</pre>", from);
    if (end == std::string::npos) {
        error = "the page's DOM holds no probe output (did the script fail?)";
        return "";
    }
    return percentDecoded(run.out.substr(from + start.size(), end - from - start.size()));
}

std::vector<PageProbe> probePages(const std::vector<std::string>& pages, const std::string& scratch) {
    std::vector<PageProbe> probes;
    for (std::size_t i = 0; i < pages.size(); i += 2) {  // two at once: the machine's cores are shared
        auto second = std::async(std::launch::async, [&, i] {
            return i + 1 < pages.size() ? probePage(pages[i + 1], scratch + "/browser-" + std::to_string(i + 1)) : PageProbe{};
        });
        probes.push_back(probePage(pages[i], scratch + "/browser-" + std::to_string(i)));
        if (i + 1 < pages.size()) probes.push_back(second.get());
    }
    return probes;
}

}  // namespace voka::test
