#include "packer/jvm/JavaQuestion.h"

#include <filesystem>
#include <sstream>

#include <unistd.h>

#include "packer/Program.h"
#include "packer/Session.h"
#include "packer/Text.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

constexpr const char* kVerifyJar = "verify.jar";
/// The line in front of the values.
constexpr std::string_view kMagicLine = "1739021872";
/// What the shell or the launcher's macros would read; a second number sign, too.
constexpr std::string_view kUnfitForCommand = "%@\"$`\\\n\r";

constexpr const char* kNames[] = {"java.specification.version", "java.version", "java.vendor",
                                  "os.arch", "java.home"};
constexpr std::size_t kNameCount = std::size(kNames);

std::vector<std::string> answersIn(const std::string& output) {
  std::vector<std::string> answers;
  std::istringstream stream(output);
  bool begun = false;
  for (std::string line; std::getline(stream, line);) {
    if (begun) answers.push_back(line);
    begun = begun || line == kMagicLine;
  }
  return answers;
}

std::string javaOf(const std::string& home) {
  std::string java = (fs::path(home) / "bin/java").string();
  if (::access(java.c_str(), X_OK) == 0 && !fs::is_directory(java)) return java;
  throw failure(home + ": is no Java home: it has no program bin/java");
}

fs::path realPath(const std::string& path) {
  std::error_code unknown;
  const fs::path real = fs::canonical(path, unknown);
  return unknown ? fs::path(path) : real;
}

int featureOf(const std::string& version) {
  const std::string_view number = version;
  return parseJavaVersion(number.starts_with("1.") ? number.substr(2) : number);
}

}  // namespace

std::string installedVerifyJar(const std::string& program) {
  std::string path = installedFile(program, kVerifyJar);
  if (path.empty()) throw failure(std::string(kVerifyJar) + ": was not installed with vspack");
  return path;
}

JavaFacts askJava(const std::string& home, const std::string& verifyJar) {
  const std::string path = fs::absolute(home).lexically_normal().string();
  std::vector<std::string> command = {javaOf(path), "-cp", verifyJar, "Verify"};
  command.insert(command.end(), std::begin(kNames), std::end(kNames));
  const ProgramResult result = runProgram(command);
  const std::vector<std::string> answers = answersIn(result.out);
  if (result.status != 0 || answers.size() < kNameCount) {
    throw failure(home + ": its Java does not say what it is (it ended with status " +
                  std::to_string(result.status) + ")");
  }
  return {.home = path,
          .feature = featureOf(answers[0]),
          .version = answers[1],
          .vendor = answers[2],
          .architecture = answers[3],
          .realHome = realPath(answers[4]).string()};
}

KnownJava knownJava(const JavaFacts& facts) {
  const std::string number = std::to_string(facts.feature);
  KnownJava java{.description = "Java " + number + " of " + facts.vendor,
                 .properties = {{"vessant.java.min." + number, "true"},
                                {"vessant.java.max." + number, "true"}},
                 .home = facts.home};
  if (!facts.vendor.empty()) java.properties.emplace_back("java.vendor", facts.vendor);
  java.properties.emplace_back("os.arch", facts.architecture);
  return java;
}

void checkHomeForLauncher(const std::string& home) {
  std::size_t position = home.find_first_of(kUnfitForCommand);
  if (position == std::string::npos) {
    const std::size_t first = home.find('#');
    if (first == std::string::npos) return;
    position = home.find('#', first + 1);
  }
  if (position == std::string::npos) return;
  throw failure(quotedName(home) + ": no launcher can verify a Java in a path with " +
                quotedName(home.substr(position, 1)));
}

}  // namespace vessant
