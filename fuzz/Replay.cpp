// fuzz_replay TARGET PATH... runs a target once for each input, without a fuzzer: files, and all
// files below directories. The tests keep the seeds and all that was ever found in this way.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

using Target = int(const std::uint8_t* data, std::size_t size);

#define VESSANT_FUZZ_TARGET(name) extern "C" Target fuzz_##name;
VESSANT_FUZZ_TARGETS
#undef VESSANT_FUZZ_TARGET

namespace {

struct NamedTarget {
  const char* name;
  Target* run;
};

constexpr NamedTarget kTargets[] = {
#define VESSANT_FUZZ_TARGET(name) {#name, fuzz_##name},
    VESSANT_FUZZ_TARGETS
#undef VESSANT_FUZZ_TARGET
};

std::vector<fs::path> filesBelow(const fs::path& path) {
  if (!fs::is_directory(path)) return {path};
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  return files;
}

void replay(Target* target, const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(stream)), {});
  std::printf("%s\n", file.c_str());
  std::fflush(stdout);
  target(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

}  // namespace

int main(int count, char** arguments) {
  for (const NamedTarget& target : kTargets) {
    if (count < 3 || std::string(target.name) != arguments[1]) continue;
    for (int i = 2; i < count; ++i) {
      for (const fs::path& file : filesBelow(arguments[i])) replay(target.run, file);
    }
    return 0;
  }
  std::fputs("usage: fuzz_replay TARGET PATH...\n", stderr);
  return 2;
}
