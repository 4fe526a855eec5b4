#include "packer/check/FileCheck.h"

#include "packer/Text.h"
#include "packer/check/Machine.h"

namespace vessant {
namespace {

constexpr std::uint64_t kBeyondFormat = std::uint64_t{1} << 32U;
/// The launcher counts the bytes that it needs as a signed number of 32 bits.
constexpr std::uint64_t kBeyondSpaceCheck = std::uint64_t{1} << 31U;

class FileCheck {
 public:
  FileCheck(const Package& package, JarCache& jars, Findings& findings)
      : package_(package), jars_(jars), findings_(findings) {}

  void run();

 private:
  [[nodiscard]] static bool mustBeZip(const PackageFile& file);
  void checkJar(const PackageFile& file);
  void checkSpace(const PackageFile& file);
  void checkTotal();
  void checkLauncher();
  void checkMachines(const std::string& machine);
  void error(int line, const char* name, const std::string& text) {
    findings_.error(package_.label, line, name, text);
  }

  const Package& package_;
  JarCache& jars_;
  Findings& findings_;
};

void FileCheck::run() {
  for (const PackageFile& file : package_.files) {
    if (mustBeZip(file)) checkJar(file);
    checkSpace(file);
  }
  checkTotal();
  checkLauncher();
}

/// An application archive may be a program of any kind.
bool FileCheck::mustBeZip(const PackageFile& file) {
  const bool isNamedSo =
      file.name.ends_with(".jar") || file.name.ends_with(".zip") || file.name.ends_with(".war");
  return file.type == FileType::ClassPathArchive || file.type == FileType::VerificationClass ||
         (file.type == FileType::ApplicationArchive && isNamedSo);
}

void FileCheck::checkJar(const PackageFile& file) {
  const JarFile& jar = jars_.of(file);
  if (!jar.isZip()) {
    return error(file.line, "not-a-zip",
                 quotedName(file.name) + " is no whole zip file: " + printable(jar.flaw));
  }
  if (file.type != FileType::VerificationClass || jar.holdsClass("Verify")) return;
  error(file.line, "no-verify-class",
        quotedName(file.name) + " has no class Verify, which the launcher runs");
}

void FileCheck::checkSpace(const PackageFile& file) {
  const std::uint64_t needed = file.bytes.length() + file.expandedSize;
  if (needed < kBeyondSpaceCheck) return;
  if (needed >= kBeyondFormat) {
    return error(file.line, "too-large",
                 quotedName(file.name) + " and what it unpacks into need " +
                     std::to_string(needed) + " bytes; the format holds less than 4 GiB");
  }
  findings_.warning(package_.label, file.line, "space-check",
                    quotedName(file.name) +
                        " needs 2 GiB or more, for which the launcher does not check the free "
                        "space: a full disk shows only while it writes");
}

/// Offsets in the index have 32 bits, too: many files that are small enough may be too many.
void FileCheck::checkTotal() {
  std::uint64_t total = package_.launcher ? package_.launcher->length() : 0;
  for (const PackageFile& file : package_.files) {
    const bool wasWithin = total < kBeyondFormat;
    total += file.bytes.length();
    if (!wasWithin || total < kBeyondFormat) continue;
    error(file.line, "too-large",
          "with " + quotedName(file.name) +
              " the installer is larger than 4 GiB, beyond which the "
              "launcher finds nothing");
  }
}

void FileCheck::checkLauncher() {
  if (!package_.launcher) return;
  const ByteSource& launcher = *package_.launcher;
  const int line = package_.launcherLine;
  if (!isLauncher(launcher)) {
    return error(
        line, "not-a-launcher",
        quotedName(launcher.label()) + " is no launcher: use the one that came with vspack");
  }
  checkMachines(machineOf(launcher.bytesAt(0, 64)));
}

void FileCheck::checkMachines(const std::string& machine) {
  for (const PackageFile& file : package_.files) {
    const bool isLauncherKind = file.type == FileType::EmbeddedLauncher;
    if (!isLauncherKind && file.type != FileType::JvmInstaller) continue;
    const std::string other =
        isLauncherKind ? machineOf(file.bytes.bytesAt(0, 64)) : machineOfRuntime(file.bytes);
    if (other.empty() || other == machine) continue;
    error(file.line, "other-machine",
          quotedName(file.name) + " is for " + other + ", but the launcher is for " + machine);
  }
}

}  // namespace

void checkFiles(const Package& package, JarCache& jars, Findings& findings) {
  FileCheck(package, jars, findings).run();
}

}  // namespace vessant
