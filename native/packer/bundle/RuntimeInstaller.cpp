#include "packer/bundle/RuntimeInstaller.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <elf.h>

#include "packer/ByteSource.h"
#include "packer/OutputFile.h"
#include "packer/PendingWork.h"
#include "packer/Text.h"
#include "packer/bundle/InstallerHead.h"
#include "packer/bundle/RuntimeTree.h"
#include "packer/bundle/TarWriter.h"
#include "packer/jvm/JavaHome.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

/// The first JDK whose jlink can leave out what debuggers need of the classes alone.
constexpr int kFirstWithOwnStrip = 13;

/// The pattern of a directory's name for mkdtemp.
std::string newDirectoryName() {
  const char* chosen = std::getenv("TMPDIR");
  const bool isChosen = chosen != nullptr && *chosen != '\0';
  return std::string(isChosen ? chosen : "/tmp") + "/vspack-XXXXXX";
}

/// A temporary directory, removed with all that is in it at the end and when an interrupt ends the
/// process. There is one at a time.
class TemporaryDirectory {
 public:
  /// Throws LauncherException, naming the directory, when it cannot be made.
  TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory();

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_ = newDirectoryName();
};

TemporaryDirectory::TemporaryDirectory() {
  PendingWork::rememberTree(path_.c_str());
  if (::mkdtemp(path_.data()) != nullptr) return;
  const int error = errno;
  PendingWork::forgetTree();
  throw failure(printable(path_) + ": " + std::strerror(error));
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
  PendingWork::forgetTree();
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

/// A runtime of a JDK with no more modules than a program needs.
class JlinkedRuntime {
 public:
  /// Makes the runtime in a temporary directory with the JDK's own jlink. Throws LauncherException
  /// when the JDK has none or cannot do it; what jlink says of it is on standard error then.
  JlinkedRuntime(const JavaFacts& jdk, const std::vector<std::string>& modules) {
    link(jdk, modules, home());
  }

  [[nodiscard]] std::string home() const { return directory_.path() + "/runtime"; }

 private:
  TemporaryDirectory directory_;
};

/// A link to a Java, as /usr/bin/java is one, makes no Java home. A JDK 8 takes the runtime that it
/// holds for its home.
void checkHome(const JavaFacts& java) {
  const fs::path home = fs::canonical(java.home);
  const fs::path real = java.realHome;
  if (real == home || real == home / "jre") return;
  throw failure(java.home + ": is not the home of its Java, which is " + java.realHome);
}

void readMachine(const std::string& java, RuntimeFacts& facts) {
  const std::string bytes = ByteSource(java).bytesAt(0, sizeof(Elf64_Ehdr));
  constexpr std::size_t kMachine = offsetof(Elf64_Ehdr, e_machine);
  if (bytes.size() < sizeof(Elf64_Ehdr) || !bytes.starts_with(ELFMAG)) return;
  facts.isBigEndian = bytes[EI_DATA] == ELFDATA2MSB;
  const auto first = static_cast<unsigned char>(bytes[kMachine]);
  const auto second = static_cast<unsigned char>(bytes[kMachine + 1]);
  facts.machine =
      static_cast<std::uint16_t>(facts.isBigEndian ? first << 8 | second : second << 8 | first);
}

/// The runtime's directory and its JVM file count, too.
RuntimeFacts factsOf(const std::vector<RuntimeEntry>& entries, const std::string& jvmFile,
                     const std::string& java) {
  RuntimeFacts facts{.files = entries.size() + 2, .bytes = jvmFile.size()};
  for (const RuntimeEntry& entry : entries) facts.bytes += entry.size;
  readMachine(java, facts);
  return facts;
}

/// The launcher completes the home with the directory that the runtime was unpacked into.
std::string jvmFileFor(const JavaFacts& java) {
  KnownJava known = knownJava(java);
  known.home = kRuntimeDirectory;
  known.isLookedFor = false;
  return jvmFileText(known);
}

void writeArchive(const std::vector<RuntimeEntry>& entries, const std::string& jvmFile,
                  bool compress, OutputFile& output) {
  TarWriter tar([&output](std::string_view bytes) { output.write(bytes); }, compress);
  const std::string directory = kRuntimeDirectory;
  tar.add({.name = directory, .kind = RuntimeEntry::Kind::Directory}, directory);
  for (const RuntimeEntry& entry : entries) tar.add(entry, directory + "/" + entry.name);
  // The last one: where it is, everything is.
  tar.addText(kUnprovenJvmFile, jvmFile);
  tar.finish();
}

}  // namespace

JavaFacts writeRuntimeInstaller(const RuntimeRequest& request, const std::string& verifyJar,
                                const std::string& output) {
  JavaFacts java = askJava(request.home, verifyJar);
  checkHome(java);
  std::optional<JlinkedRuntime> linked;
  if (!request.modules.empty()) linked.emplace(java, request.modules);
  const std::string home = linked ? linked->home() : java.home;
  const std::vector<RuntimeEntry> entries = collectRuntime(home);
  const std::string jvmFile = jvmFileFor(java);
  RuntimeFacts facts = factsOf(entries, jvmFile, home + "/bin/java");
  facts.isCompressed = request.compress;
  OutputFile file(output, OutputFile::kProgram);
  file.write(installerHead(facts));
  writeArchive(entries, jvmFile, request.compress, file);
  file.publish();
  return java;
}

}  // namespace vessant
