#include "packer/Session.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace vessant {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds kInterval(200);
constexpr const char* kClearLine = "\r\x1B[K";

bool isThere(const fs::path& path) {
  std::error_code unknown;
  return fs::exists(path, unknown);
}

fs::path directoryOfProgram(const std::string& program) {
  return fs::path(program).parent_path();
}

/// Where an installation keeps the project's files, seen from the directory of its programs.
constexpr const char* kShares[] = {"../share/vessant", "../share", "/usr/local/share/vessant",
                                   "/usr/share/vessant"};
constexpr const char* kLaunchers[] = {
    "launcher", "../lib/vessant/launcher", "../share/vessant/launcher",
    "/usr/local/lib/vessant/launcher", "/usr/lib/vessant/launcher"};

}  // namespace

Progress::Progress(const Session& session, std::string what, std::uint64_t total)
    : session_(session),
      what_(std::move(what)),
      total_(total),
      next_(Clock::now() + session.patience) {}

Progress::~Progress() {
  if (shown_) session_.err << kClearLine << std::flush;
}

void Progress::advance(std::uint64_t bytes) {
  constexpr std::uint64_t kWhole = 100;
  done_ += bytes;
  if (!session_.errIsTerminal || total_ == 0 || Clock::now() < next_) return;
  next_ = Clock::now() + kInterval;
  shown_ = true;
  session_.err << kClearLine << what_ << ": " << std::min(done_, total_) * kWhole / total_ << " %"
               << std::flush;
}

std::vector<std::string> installedDirectories(const std::string& program) {
  std::vector<std::string> directories;
  for (const char* share : kShares) {
    const fs::path directory = (directoryOfProgram(program) / share).lexically_normal();
    directories.push_back(directory.string());
    directories.push_back((directory / "jvm").string());
  }
  return directories;
}

std::string installedFile(const std::string& program, const std::string& name) {
  for (const std::string& directory : installedDirectories(program)) {
    const fs::path path = fs::path(directory) / name;
    if (isThere(path)) return path.string();
  }
  return "";
}

std::string installedLauncher(const std::string& program) {
  const fs::path directory = directoryOfProgram(program);
  for (const char* place : kLaunchers) {
    const fs::path path = (directory / place).lexically_normal();
    if (isThere(path)) return path.string();
  }
  return (directory / kLaunchers[0]).string();
}

}  // namespace vessant
