#include "launcher/archive/TempFiles.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/DeleteFullDir.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
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

// Both make something where nothing lies. They return 0 or the error number, read before anything
// else can run, and fill `identity` with that of what they made.

int createExclusively(const SString& path, std::optional<FileIdentity>& identity) {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  const UniqueFd file(::open(path.cString(), kFlags, kFileMode));
  if (!file.isOpen()) return errno;
  identity = identityOf(file.get());
  return 0;
}

int createDirectory(const SString& path, std::optional<FileIdentity>& identity) {
  if (::mkdir(path.cString(), kDirectoryMode) != 0) return errno;
  identity = identityOf(AT_FDCWD, path.cString());
  return 0;
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
    TempPath temp = {newName(), {}};
    error = createDirectory(temp.path, temp.identity);
    if (error == 0) return add(directories_, std::move(temp));
  }
  throw LauncherException(systemErrorText(error));
}

SString TempFiles::createTempFile() {
  int error = EEXIST;
  TempPath temp;
  for (int attempt = 0; attempt < kMostAttempts && error == EEXIST; ++attempt) {
    temp.path = newName();
    error = createExclusively(temp.path, temp.identity);
    if (error == 0) return add(files_, std::move(temp));
  }
  throw LauncherException("Error creating tmp file " + temp.path);
}

void TempFiles::registerTempFile(const SString& path) {
  add(files_, {path, identityOf(AT_FDCWD, path.cString())});
}

void TempFiles::unregisterTempFile(const SString& path) {
  removeFirst(files_, path);
}

void TempFiles::unregisterTempDir(const SString& path) {
  removeFirst(directories_, path);
}

/// Files first: those of a program that the run has started may lie in its directories.
bool TempFiles::cleanupTempFiles() {
  try {
    deleteAll(files_);
    deleteAll(directories_);
  } catch (...) {
    // Whatever it is, the run is over and nobody is left to tell. What lies behind the failing path
    // stays: the caller learns that the clean-up is not complete and leaves the launcher in place.
    return false;
  }
  files_.clear();
  directories_.clear();
  return true;
}

/// A directory may have been registered as a file and the other way round; DeleteFullDir takes
/// both.
void TempFiles::deleteAll(const TempPaths& paths) {
  for (const TempPath& temp : paths) DeleteFullDir(services_, temp.identity).navigate(temp.path);
}

SString TempFiles::add(TempPaths& paths, TempPath temp) {
  paths.add(std::make_unique<TempPath>(std::move(temp)));
  return paths.getLast()->path;
}

void TempFiles::removeFirst(TempPaths& paths, const SString& path) {
  for (std::int32_t i = 0; i < paths.count(); ++i) {
    if (paths.get(i)->path == path) return paths.removeAt(i);
  }
}

/// tempnam only chooses the name. Whoever uses it creates it exclusively, so that nobody else can
/// have put anything there in between.
SString TempFiles::newName() {
  const std::unique_ptr<char, FreeMemory> name(::tempnam(getTempRoot().cString(), kNamePrefix));
  if (name == nullptr) throw LauncherException(systemErrorText());
  return absolutePath(name.get());
}

/// The run is over: a launcher that cannot be removed, or a directory that holds more than the
/// launcher, or has a name for which there is no memory, simply stays.
void deleteOwnExecutable(const SString& launcherFileName) noexcept {
  static_cast<void>(::unlink(launcherFileName.cString()));
  const SString::Size separator = launcherFileName.rfind("/");
  if (separator == SString::npos) return;
  try {
    static_cast<void>(::rmdir(launcherFileName.substr(0, separator).cString()));
  } catch (const std::bad_alloc&) {
    return;
  }
}

}  // namespace vessant
