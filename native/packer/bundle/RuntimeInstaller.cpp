#include "packer/bundle/RuntimeInstaller.h"

#include <filesystem>
#include <optional>

#include <elf.h>

#include "packer/ByteSource.h"
#include "packer/OutputFile.h"
#include "packer/Text.h"
#include "packer/bundle/InstallerHead.h"
#include "packer/bundle/Jlink.h"
#include "packer/bundle/RuntimeTree.h"
#include "packer/bundle/TarWriter.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

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
