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

// Both return 0 or the error number, read before anything else can run.

int createExclusively(const SString& path) {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  const int fd = ::open(path.cString(), kFlags, kFileMode);
  if (fd < 0) return errno;
  ::close(fd);
  return 0;
}

int createDirectory(const SString& path) {
  return ::mkdir(path.cString(), kDirectoryMode) == 0 ? 0 : errno;
}

void removeFirst(StringDeque& paths, const SString& path) {
  paths.removeAt(paths.indexOf(path));
}

}  // namespace

/// Asked at every use: the root may go, or come, while the launcher runs.
SString TempFiles::getTempRoot() {
  if (root_.isEmpty()) root_ = kDefaultTempRoot;
  if (isDirectory(root_)) return root_;
  throw LauncherException(services_.messages.formatError(ErrorId::TempRootMissing, root_));
}

SString TempFiles::tempRootSetting() const {
  return root_.isEmpty() ? SString(kDefaultTempRoot) : root_;
}

SString TempFiles::createTempDir() {
  int error = EEXIST;
  for (int attempt = 0; attempt < kMostAttempts && error == EEXIST; ++attempt) {
    SString path = newName();
    error = createDirectory(path);
    if (error != 0) continue;
    directories_.add(path);
    return path;
  }
  throw LauncherException(systemErrorText(error));
}

SString TempFiles::createTempFile() {
  SString path;
  int error = EEXIST;
  for (int attempt = 0; attempt < kMostAttempts && error == EEXIST; ++attempt) {
    path = newName();
    error = createExclusively(path);
    if (error != 0) continue;
    registerTempFile(path);
    return path;
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
  } catch (...) {
    // Whatever it is, the run is over and nobody is left to tell. What lies behind the failing path
    // stays: the caller learns that the clean-up is not complete and leaves the launcher in place.
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
  // The run is over: a launcher that cannot be removed, or a directory that holds more than the
  // launcher, simply stays.
  static_cast<void>(::unlink(launcherFileName.cString()));
  const SString::Size separator = launcherFileName.rfind("/");
  if (separator == SString::npos) return;
  static_cast<void>(::rmdir(launcherFileName.substr(0, separator).cString()));
}

}  // namespace vessant
