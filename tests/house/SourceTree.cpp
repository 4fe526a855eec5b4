#include "house/SourceTree.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "support/BuildPaths.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

SourceFile readSource(const fs::path& file, const fs::path& top) {
  SourceFile source{file.lexically_relative(top).string(), {}};
  std::ifstream stream(file);
  std::string line;
  while (std::getline(stream, line)) source.lines.push_back(line);
  return source;
}

}  // namespace

std::string SourceFile::unit() const {
  return fs::path(path).replace_extension().string();
}

std::vector<std::string> SourceFile::includes() const {
  const std::string begin = "#include \"";
  std::vector<std::string> names;
  for (const std::string& line : lines) {
    if (!line.starts_with(begin)) continue;
    names.push_back(line.substr(begin.size(), line.rfind('"') - begin.size()));
  }
  return names;
}

std::vector<SourceFile> sourceFiles(const std::string& directory) {
  const fs::path project = kSourceDir;
  const fs::path top = project / *fs::path(directory).begin();
  std::vector<SourceFile> files;
  for (const auto& entry : fs::recursive_directory_iterator(project / directory)) {
    const std::string ending = entry.path().extension().string();
    if (ending == ".h" || ending == ".cpp") files.push_back(readSource(entry.path(), top));
  }
  std::sort(files.begin(), files.end(),
            [](const SourceFile& a, const SourceFile& b) { return a.path < b.path; });
  return files;
}

}  // namespace vessant::test
