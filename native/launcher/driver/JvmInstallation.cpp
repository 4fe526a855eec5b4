#include "launcher/driver/JvmInstallation.h"

#include <utility>

#include "launcher/base/DeleteFullDir.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"
#include "launcher/tagfile/JvmTagNames.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {
namespace {

constexpr std::int32_t kQuietMode = 0;
constexpr std::int32_t kProgressMode = 1;
constexpr std::int32_t kAskMode = 2;

/// The JVM file that an installed JVM brings at the top of its directory.
constexpr const char* kInstalledJvmFile = "jvm";

/// A file that goes away with its owner.
class ScopedFile {
 public:
  ScopedFile(SString path, const RunServices& services)
      : path_(std::move(path)), services_(services) {}
  ScopedFile(const ScopedFile&) = delete;
  ScopedFile& operator=(const ScopedFile&) = delete;
  ~ScopedFile() { deletePath(path_, services_); }

  [[nodiscard]] const SString& path() const { return path_; }

 private:
  SString path_;
  const RunServices& services_;
};

/// The home that an installed JVM file names, which may be given relative to the destination.
SString installedHome(const SString& home, const SString& destination) {
  if (home.isEmpty()) return destination;
  if (home.view().starts_with(kPathSeparator)) return home;
  return joinPath(destination, home);
}

}  // namespace

void JvmInstallation::installEmbeddedJvm(std::int32_t mode) {
  state_.variables.setNumericVariable(1, 0);
  state_.variables.setStringVariable(1, "");
  if (mode == kQuietMode) {
    services_.console.disableProgress();
  } else {
    services_.console.enableProgress();
    services_.console.showStage(Stage::PreparingJvm);
  }
  const FileIndexEntry* installer = state_.launcherFile.findByType(FileType::JvmInstaller);
  if (installer == nullptr) {
    throw LauncherException(services_.messages.errorText(ErrorId::NoJvmInstaller));
  }
  const SString destination = chooseDestination(mode);
  if (destination.isEmpty()) return;
  runInstaller(*installer, destination);
  const SString jvmFile = joinPath(destination, kInstalledJvmFile);
  if (!fileExists(jvmFile)) {
    return services_.run.log("Invalid bundled JVM. Missing 'jvm' file.", LogLevel::Error);
  }
  adoptInstalledJvm(jvmFile, destination, mode != kAskMode);
  state_.variables.setNumericVariable(1, 1);
  state_.variables.setStringVariable(1, jvmFile);
}

SString JvmInstallation::chooseDestination(std::int32_t mode) {
  if (mode == kQuietMode || mode == kProgressMode) {
    SString directory = services_.tempFiles.createTempDir();
    services_.adviseIfNothingRunsIn(directory);
    return directory;
  }
  if (mode != kAskMode) return "";
  const SString answer = services_.console.askDestinationDirectory();
  return answer.isEmpty() ? answer : absolutePath(answer);
}

void JvmInstallation::runInstaller(const FileIndexEntry& installer, const SString& destination) {
  const ScopedFile program(
      services_.extractor.extractFile(installer, destination, PartialFile::Removed), services_.run);
  SString output;
  SString errors;
  ChildCommand command{.command = quoted(program.path()), .workingDirectory = destination};
  command.captureOutput = true;
  command.redirectChildOutput = true;
  command.stdoutText = &output;
  command.stderrText = &errors;
  const std::int32_t status =
      services_.platform.executeCommand(command, services_.console).exitCode;
  services_.run.throwIfCanceled();  // what it left behind is not looked at
  const bool isInstalled = fileExists(joinPath(destination, kInstalledJvmFile));
  if (status == 0 && isInstalled) return;
  // Kept: whatever its status, a JVM file makes it a success. What it said may tell why it was
  // none.
  services_.run.log("The JVM installer ended with status " + longToString(status) + "\nStdOut:\n" +
                    output + "\nErrOut:\n" + errors);
}

/// The file is read and written as `jvmFile`, the path as it was given; what it says of itself
/// counts from `destination`, which is absolute.
void JvmInstallation::adoptInstalledJvm(const SString& jvmFile, const SString& destination,
                                        bool temporary) {
  TagFile tags(jvmFile, services_.log);
  const SString home = installedHome(tags.getValue(jvmtag::kHome), destination);
  tags.setJvmTags(home, joinPath(destination, kInstalledJvmFile), temporary);
  tags.save(jvmFile);
}

SString JvmInstallation::installNamedJvm(Display display, const SString& installer,
                                         const SString& destination) {
  ChildCommand command{.command = quoted(absolutePath(installer)), .workingDirectory = destination};
  command.runInBackground = display.progress;
  command.redirectChildOutput = true;
  services_.platform.executeCommand(command, services_.console);
  services_.run.throwIfCanceled();
  SString jvmFile = joinPath(destination, kInstalledJvmFile);
  adoptInstalledJvm(jvmFile, absolutePath(destination), false);
  return jvmFile;
}

}  // namespace vessant
