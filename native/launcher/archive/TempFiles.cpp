#include "launcher/archive/TempFiles.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/DeleteFullDir.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/SystemError.h"
#include "launcher/base/UniqueFd.h"

namespace vessant {
namespace {

constexpr const char* kNamePrefix = "vsj";
constexpr mode_t kDirectoryMode = 0777;
constexpr mode_t kFileMode = 0666;
// Another process can take a name between its choice and its use; this many times in a row it
// cannot.
constexpr int kMostAttempts = 100;

struct FreeMemory {
  void operator()(char* memory) const { std::free(memory); }
};

bool createExclusively(const SString& path) {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  return UniqueFd(::open(path.cString(), kFlags, kFileMode)).isOpen();
}

bool createDirectory(const SString& path) {
  return ::mkdir(path.cString(), kDirectoryMode) == 0;
}

void removeFirst(StringDeque& paths, const SString& path) {
  paths.removeAt(paths.indexOf(path));
}

}  // namespace

SString TempFiles::getTempRoot() {
  if (root_.isEmpty()) root_ = kDefaultTempRoot;
  if (isDirectory(root_)) return root_;
  throw LauncherException(services_.messages.formatError(ErrorId::TempRootMissing, root_));
}

SString TempFiles::tempRootSetting() const {
  return root_.isEmpty() ? SString(kDefaultTempRoot) : root_;
}

SString TempFiles::createTempDir() {
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    SString path = newName();
    if (createDirectory(path)) {
      directories_.add(path);
      return path;
    }
    if (errno != EEXIST) break;
  }
  throw LauncherException(systemErrorText());
}

SString TempFiles::createTempFile() {
  SString path;
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    path = newName();
    if (createExclusively(path)) {
      registerTempFile(path);
      return path;
    }
    if (errno != EEXIST) break;
  }
  throw LauncherException("Error creating tmp file " + path);
}

void TempFiles::unregisterTempFile(const SString& path) {
  removeFirst(files_, path);
}

void TempFiles::unregisterTempDir(const SString& path) {
  removeFirst(directories_, path);
}

bool TempFiles::cleanupTempFiles() {
  try {
    for (const StringDeque* paths : {&files_, &directories_}) {
      for (const SString& path : *paths) {
        if (isDirectory(path)) {
          DeleteFullDir(services_).navigate(path);
        } else {
          deletePath(path, services_);
        }
      }
    }
  } catch (...) {  // whatever it is, the run is over
    return false;
  }
  files_.clear();
  directories_.clear();
  return true;
}

/// tempnam only chooses the name. Whoever uses it creates it exclusively, so that nobody else can
/// have put anything there in between.
SString TempFiles::newName() {
  const std::unique_ptr<char, FreeMemory> name(::tempnam(getTempRoot().cString(), kNamePrefix));
  if (name == nullptr) throw LauncherException(systemErrorText());
  return absolutePath(name.get());
}

void deleteOwnExecutable(const SString& launcherFileName) {
  static_cast<void>(::unlink(launcherFileName.cString()));
  const SString::Size separator = launcherFileName.rfind("/");
  if (separator == SString::npos) return;
  static_cast<void>(::rmdir(launcherFileName.substr(0, separator).cString()));
}

}  // namespace vessant
