#include "support/ProgramCopy.h"

#include <filesystem>
#include <sstream>
#include <vector>

#include "support/ProcessRunner.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

/// What the loader would load for a program; nothing for a static one.
std::vector<std::string> librariesOf(const std::string& program) {
  std::istringstream words(runProcess({.command = {"/usr/bin/ldd", program}}).out);
  std::vector<std::string> libraries;
  for (std::string word; words >> word;) {
    if (word.starts_with("/") && fs::exists(word)) libraries.push_back(word);
  }
  return libraries;
}

void copyTo(const std::string& file, const std::string& target) {
  fs::create_directories(fs::path(target).parent_path());
  fs::copy_file(file, target, fs::copy_options::overwrite_existing);
}

}  // namespace

bool copyProgram(const std::string& program, const std::string& root, const std::string& place) {
  if (!fs::exists(program)) return false;
  copyTo(program, root + place);
  for (const std::string& library : librariesOf(program)) copyTo(library, root + library);
  return true;
}

}  // namespace vessant::test
