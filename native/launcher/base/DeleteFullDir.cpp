#include "launcher/base/DeleteFullDir.h"

#include <cerrno>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"

namespace vessant {
namespace {

void warn(const SString& path, const SString& reason, const RunServices& services) {
  services.log("Could not delete " + path + " :  " + reason, LogLevel::Warning);
}

/// A path in two parts: its directory, opened, and the name in it. A path whose last part is no
/// name
/// ("/", "..") and one whose directory cannot be opened stay whole.
class Place {
 public:
  explicit Place(const SString& path);

  [[nodiscard]] int directory() const { return directory_.isOpen() ? directory_.get() : AT_FDCWD; }
  [[nodiscard]] const char* name() const { return path_.cString() + nameStart_; }
  [[nodiscard]] SString::Size nameStart() const { return nameStart_; }
  /// Without separators at its end: "link/" is what the link leads to, but the link itself is
  /// meant.
  [[nodiscard]] const SString& path() const { return path_; }

 private:
  SString path_;
  UniqueFd directory_;
  SString::Size nameStart_ = 0;
};

Place::Place(const SString& path) : path_(path) {
  const SString::Size last = path_.findLastNotOf(kPathSeparator);
  if (last == SString::npos) return;
  path_.erase(last + 1);
  const SString::Size separator = path_.rfind("/");
  if (separator == SString::npos) return;
  const std::string_view name = path_.view().substr(separator + 1);
  if (name == "." || name == "..") return;
  const SString directory(path_, 0, separator + 1);
  directory_.reset(::open(directory.cString(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (directory_.isOpen()) nameStart_ = separator + 1;
}

/// Returns 0 or the error number. The kernel is asked to remove a directory first, and anything
/// else when it says that it is none: between a question of our own and the removal the entry could
/// change. What is gone already is none the worse for it.
int removeEntry(int directory, const char* name) {
  if (::unlinkat(directory, name, AT_REMOVEDIR) == 0 || errno == ENOENT) return 0;
  if (errno != ENOTDIR) return errno;
  return ::unlinkat(directory, name, 0) == 0 || errno == ENOENT ? 0 : errno;
}

/// Whether what lies there is what is expected, if anything is; a stranger is told of.
bool isOurs(const Place& place, const std::optional<FileIdentity>& expected,
            const RunServices& services) {
  if (!expected || identityOf(place.directory(), place.name()) == expected) return true;
  warn(place.path(), "something else has taken its place", services);
  return false;
}

bool removeAt(const Place& place, const RunServices& services) {
  const int error = removeEntry(place.directory(), place.name());
  if (error == 0) return true;
  warn(place.path(), systemErrorText(error), services);
  return false;
}

}  // namespace

bool deletePath(const SString& path, const RunServices& services,
                const std::optional<FileIdentity>& expected) {
  const Place place(path);
  if (!identityOf(place.directory(), place.name())) return false;
  return isOurs(place, expected, services) && removeAt(place, services);
}

bool DeleteFullDir::navigate(const SString& start) {
  const Place place(start);
  start_ = identityOf(place.directory(), place.name());
  if (!start_ || !isOurs(place, expected_, services())) return false;
  isStartAhead_ = true;
  directoryStays_ = false;
  walk(place.directory(), place.path(), place.nameStart());
  // When a directory below stays, the log says so already, and the start has no reason of its own.
  if (!directoryStays_ && isOurs(place, start_, services())) removeAt(place, services());
  return false;
}

bool DeleteFullDir::processFile(const FoundFile& file) {
  if (::unlinkat(file.directory(), file.name(), 0) == 0 || errno == ENOENT) return false;
  const int error = errno;  // building the text may change it
  warn(file.path(), systemErrorText(error), services());
  return false;
}

/// A directory closed to its owner is opened to him: before it is opened when it cannot be read,
/// and behind that when its entries cannot be removed. Failures of either are passed over, because
/// what then cannot be deleted is told of at its turn.
UniqueFd DeleteFullDir::openDirectory(int parent, const char* name) {
  constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC;
  UniqueFd directory(::openat(parent, name, kFlags));
  if (!directory.isOpen() && errno == EACCES &&
      ::fchmodat(parent, name, S_IRWXU, AT_SYMLINK_NOFOLLOW) == 0) {
    directory.reset(::openat(parent, name, kFlags));
  }
  struct stat status = {};
  if (!directory.isOpen() || ::fstat(directory.get(), &status) != 0) return {};
  if (status.st_dev != start_->device) return {};  // mounted here, and no part of the tree
  if (std::exchange(isStartAhead_, false) && identityOf(directory.get()) != start_) return {};
  if ((status.st_mode & S_IRWXU) != S_IRWXU) {
    static_cast<void>(::fchmod(directory.get(), (status.st_mode & ALLPERMS) | S_IRWXU));
  }
  return directory;
}

void DeleteFullDir::leaveDirectory(int parent, const char* name, const SString& path) {
  const int error = removeEntry(parent, name);
  if (error == 0) return;
  directoryStays_ = true;
  warn(path, systemErrorText(error), services());
}

}  // namespace vessant
