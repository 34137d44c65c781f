// Paths as the plug-in sees them and as the file system has them. The
// plug-in works in the host's notation, with the backslash as separator
// (`\home\ann\a.xml`); the headless host converts at the file-system
// boundary, so a backslash never ends up inside a file name on disk.
#pragma once

#include <string>

namespace voka::headless {

// "/home/ann/a.xml" -> "\home\ann\a.xml".
std::string toHostPath(const std::string& systemPath);
// "\home\ann\a.xml" (or with forward slashes) -> "/home/ann/a.xml".
std::string toSystemPath(const std::string& hostPath);
// The absolute, lexically normal form of a host path ("." and ".." resolved,
// relative paths taken from the working directory), so that two spellings of
// one file compare equal.
std::string normalHostPath(const std::string& hostPath);
// The part after the last separator.
std::string fileNameOf(const std::string& hostPath);
// The folder of a host path, ending with a separator; "" when there is none.
std::string folderOf(const std::string& hostPath);

// A text for people: every backslash of a host path shown as "/". The
// host's key notation ("\!11") is left alone.
std::string toDisplayText(const std::string& text);

}  // namespace voka::headless
