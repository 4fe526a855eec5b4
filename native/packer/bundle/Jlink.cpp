#include "packer/bundle/Jlink.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "packer/Program.h"
#include "packer/Text.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

/// The first JDK whose jlink can leave out what debuggers need of the classes alone.
constexpr int kFirstWithOwnStrip = 13;

fs::path newDirectory() {
  const char* chosen = std::getenv("TMPDIR");
  const bool isChosen = chosen != nullptr && *chosen != '\0';
  std::string name = std::string(isChosen ? chosen : "/tmp") + "/vspack-XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) throw failure(name + ": " + std::strerror(errno));
  return name;
}

std::string joined(const std::vector<std::string>& modules) {
  std::string text;
  for (const std::string& module : modules) text += (text.empty() ? "" : ",") + module;
  return text;
}

void link(const JavaFacts& jdk, const std::vector<std::string>& modules, const std::string& home) {
  const std::string jlink = (fs::path(jdk.home) / "bin/jlink").string();
  if (!fs::exists(jlink)) throw failure(jdk.home + ": choosing modules needs a JDK with bin/jlink");
  const char* strip =
      jdk.feature < kFirstWithOwnStrip ? "--strip-debug" : "--strip-java-debug-attributes";
  const ProgramResult result =
      runProgram({jlink, "--add-modules", joined(modules), strip, "--no-header-files",
                  "--no-man-pages", "--output", home});
  if (result.status == 0) return;
  std::fputs(result.out.c_str(), stderr);  // jlink tells its errors on either stream
  throw failure(jlink + ": ended with status " + std::to_string(result.status));
}

}  // namespace

JlinkedRuntime::JlinkedRuntime(const JavaFacts& jdk, const std::vector<std::string>& modules)
    : directory_(newDirectory()) {
  try {
    link(jdk, modules, home());
  } catch (...) {
    std::error_code ignored;
    fs::remove_all(directory_, ignored);
    throw;
  }
}

JlinkedRuntime::~JlinkedRuntime() {
  std::error_code ignored;
  fs::remove_all(directory_, ignored);
}

std::string JlinkedRuntime::home() const {
  return (directory_ / "runtime").string();
}

}  // namespace vessant
