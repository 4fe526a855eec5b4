#include "PackageFixture.h"

#include <algorithm>
#include <stdexcept>

#include <gmock/gmock.h>

#include "JarBuilder.h"
#include "packer/Finding.h"
#include "support/BuildPaths.h"

namespace vessant::test {
namespace {

constexpr int kFirstLine = 10;

constexpr const char* kScript =
    "INSTRUCTIONS:\n"
    "  INITIALIZE_UI\n"
    "  FIND_JVM 1 1\n"
    "  JMP0 @N1@ none\n"
    "  LAUNCH \"@S2@\" 1\n"
    "  GOTO end\n"
    "  :none\n"
    "  ILAUNCH 0 0\n"
    "  :end\n"
    "/:\n";

constexpr const char* kLaunch =
    "DESC: Hello\n"
    "DISPLAY_CONSOLE: 1\n"
    "COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() %SYSTEMPROP%(\"a\",\"b\") app.Main\n";

constexpr const char* kJvm =
    "DESC: Java 17\n"
    "JVM_PROPERTIES: java.specification.version=17\n"
    "JVM_EXE: bin/java\n"
    "SEARCH_ALL: 0\n"
    "PLATFORM_HINT: JAVA_HOME\n"
    "PATH_HINT:\n"
    "  jre\n"
    "  /usr/lib/jvm/java-17\n"
    "/:\n"
    "CLASSPATH: \"-classpath \"\n"
    "CLASSPATH_SEPARATOR: \":\"\n"
    "SYSTEM: \"-D\"\n"
    "SYSTEM_SEPARATOR: \"=\"\n";

}  // namespace

PackageFixture::PackageFixture() : launcherPath(kLauncher) {
  put(FileType::Instructions, 1, "setup.instructions", kScript);
  put(FileType::LaunchScript, 2, "setup.launch", kLaunch);
  put(FileType::VerificationClass, 3, "verify.jar", jarBytes({{"Verify.class", "x"}}));
  put(FileType::ClassPathArchive, 4, "app.jar", jarBytes({{"app/Main.class", "x"}}));
  put(FileType::JvmFile, 17, "java.jvm", kJvm);
}

void PackageFixture::put(FileType type, std::uint32_t id, const std::string& name,
                         const std::string& content) {
  drop(name);
  parts_.push_back({type, id, name, content});
}

void PackageFixture::drop(const std::string& name) {
  std::erase_if(parts_, [&name](const Part& p) { return p.name == name; });
}

void PackageFixture::growTo(const std::string& name, std::uint64_t length) {
  part(name).length = length;
}

PackageFixture::Part& PackageFixture::part(const std::string& name) {
  const auto found =
      std::find_if(parts_.begin(), parts_.end(), [&name](const Part& p) { return p.name == name; });
  if (found == parts_.end()) throw std::logic_error("no file " + name);
  return *found;
}

void PackageFixture::change(const std::string& name, const std::string& from,
                            const std::string& to) {
  std::string& content = part(name).content;
  const std::size_t place = content.find(from);
  if (place == std::string::npos) throw std::logic_error(name + " has no " + from);
  content.replace(place, from.size(), to);
}

void PackageFixture::script(const std::string& statements) {
  part("setup.instructions").content = "INSTRUCTIONS:\n" + statements + "/:\n";
}

void PackageFixture::command(const std::string& line) {
  part("setup.launch").content = "DESC: Hello\nDISPLAY_CONSOLE: 1\n" + line + "\n";
}

Findings PackageFixture::check(bool strict) {
  Package package;
  package.label = "setup.manifest";
  package.line = kFirstLine - 1;
  package.directory = tree.root();
  package.launcherLine = 2;
  if (!launcherPath.empty()) package.launcher = ByteSource(launcherPath);
  int line = kFirstLine;
  for (const Part& p : parts_) {
    const std::string path = tree.file(p.name, p.content);
    if (p.length > 0) std::filesystem::resize_file(path, p.length);
    package.files.push_back({p.type, p.id, p.name, p.name, line++, ByteSource(path)});
  }
  Findings findings;
  checkPackage(package, {strict}, findings);
  return findings;
}

std::vector<std::string> PackageFixture::found(bool strict) {
  std::vector<std::string> lines;
  for (const Finding& finding : check(strict).sorted()) {
    const std::string place =
        finding.line > 0 ? finding.file + ":" + std::to_string(finding.line) : finding.file;
    lines.push_back(place + " " + finding.name);
    EXPECT_THAT(findingNames(), testing::Contains(finding.name)) << "--allow does not know it";
  }
  return lines;
}

std::vector<std::string> PackageFixture::texts() {
  std::vector<std::string> all;
  for (const Finding& finding : check().sorted()) all.push_back(finding.text);
  return all;
}

}  // namespace vessant::test
