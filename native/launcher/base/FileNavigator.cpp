#include "launcher/base/FileNavigator.h"

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace vessant {
namespace {

/// As much as the kernel hands out at a time is worth asking for: the walk of a disk is little
/// else.
constexpr std::size_t kBufferSize = 1U << 16;

constexpr std::int64_t kFilesPerProgressStep = 1000;

/// Deep enough for every tree that people make. Below, the directory that was left longest ago is
/// closed; it is found again from its child when the walk comes back.
constexpr std::size_t kMostOpenLevels = 64;

/// The mode bit that makes an entry a directory for the walk. Sockets and block devices have it
/// too: they are taken for directories and passed over when they cannot be opened. Kept: it decides
/// what counts as a file.
constexpr mode_t kDirectoryBit = 0x4000;

bool hasDirectoryBit(int directory, const char* name) {
  struct stat status = {};
  // What is gone by now is handed over as a file. Kept: the walk counts it.
  return ::fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         (status.st_mode & kDirectoryBit) != 0;
}

/// Most file systems tell the type in the directory entry. It is trusted instead of an lstat, which
/// saves a system call for each of the hundreds of thousands of files on a disk; the two differ
/// only when an entry is replaced between the reading of its directory and its turn. Where the file
/// system does not tell, lstat is asked.
bool walksAsDirectory(int directory, const dirent64& entry) {
  if (entry.d_type == DT_UNKNOWN) return hasDirectoryBit(directory, entry.d_name);
  return (static_cast<mode_t>(DTTOIF(entry.d_type)) & kDirectoryBit) != 0;
}

bool isDots(const char* name) {
  if (name[0] != '.') return false;
  return name[1] == '\0' || (name[1] == '.' && name[2] == '\0');
}

}  // namespace

DirectoryReader::DirectoryReader() : buffer_(new std::byte[kBufferSize]) {}

void DirectoryReader::start(int directory) {
  directory_ = directory;
  filled_ = 0;
  position_ = 0;
}

dirent64* DirectoryReader::next() {
  while (position_ < filled_ || refill()) {
    auto* entry = reinterpret_cast<dirent64*>(buffer_.get() + position_);
    position_ += entry->d_reclen;
    if (!isDots(entry->d_name)) return entry;
  }
  return nullptr;
}

bool DirectoryReader::refill() {
  const ssize_t count = ::getdents64(directory_, buffer_.get(), kBufferSize);
  position_ = 0;
  filled_ = count > 0 ? static_cast<std::size_t>(count) : 0;
  return count > 0;
}

const SString& FoundFile::path() const {
  if (path_.length() == directoryLength_) path_.append(name_);
  return path_;
}

bool FileNavigator::navigate(const SString& start) {
  return walk(AT_FDCWD, start, 0);
}

bool FileNavigator::walk(int parent, const SString& path, SString::Size nameStart) {
  levels_.clear();
  names_.clear();
  stopped_ = false;
  fileCount_ = 0;
  path_ = path.view();
  // The cancel flag is polled before each directory and, while one is read, before each entry.
  if (!hasEnded()) enter(parent, nameStart);
  while (!levels_.empty() && !hasEnded()) {
    if (names_.size() > levels_.back().firstName) {
      enterNext();
    } else {
      leaveLast();
    }
  }
  levels_.clear();
  return stopped_;
}

bool FileNavigator::skipDirectory(const SString& /*path*/) {
  return false;
}

UniqueFd FileNavigator::openDirectory(int parent, const char* name) {
  // O_NONBLOCK: a FIFO that has taken the directory's place must not hold the walk up.
  constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC;
  return UniqueFd(::openat(parent, name, parent == AT_FDCWD ? kFlags : kFlags | O_NOFOLLOW));
}

void FileNavigator::leaveDirectory(int /*parent*/, const char* /*name*/, const SString& /*path*/) {}

bool FileNavigator::hasEnded() const {
  return stopped_ || (cancellable_ && services_.cancelFlag.isSet());
}

/// Visits the directory of `path_`, whose name under `parent` begins at `nameStart`.
void FileNavigator::enter(int parent, SString::Size nameStart) {
  const char* name = path_.cString() + nameStart;
  const bool isSkipped = skipDirectory(path_);
  UniqueFd directory = isSkipped ? UniqueFd() : openDirectory(parent, name);
  if (directory.isOpen()) {
    ensureTrailingSeparator(path_);
    levels_.push_back({std::move(directory), {}, path_.length(), names_.size()});
    closeFarLevel();
    readLast();
  } else if (!isSkipped && !levels_.empty()) {
    leaveDirectory(parent, name, path_);
  }
}

void FileNavigator::enterNext() {
  const Level& level = levels_.back();
  const auto end = names_.end() - 1;
  const auto begin = std::find(std::make_reverse_iterator(end), names_.rend(), '\0').base();
  path_.replace(level.pathLength, SString::npos, std::string_view(begin, end));
  names_.erase(begin, names_.end());
  enter(level.directory.get(), level.pathLength);
}

void FileNavigator::leaveLast() {
  const Level last = std::move(levels_.back());
  levels_.pop_back();
  if (levels_.empty()) return;
  Level& parent = levels_.back();
  if (!parent.directory.isOpen()) reopen(parent, last.directory.get());
  path_.erase(last.pathLength - 1);  // the separator, too
  leaveDirectory(parent.directory.get(), path_.cString() + parent.pathLength, path_);
}

void FileNavigator::readLast() {
  const Level& level = levels_.back();
  reader_.start(level.directory.get());
  while (!hasEnded()) {
    const dirent64* entry = reader_.next();
    if (entry == nullptr) return;
    visitEntry(level, *entry);
  }
}

void FileNavigator::visitEntry(const Level& level, const dirent64& entry) {
  if (walksAsDirectory(level.directory.get(), entry)) {
    const std::string_view name = entry.d_name;
    names_.insert(names_.end(), name.data(), name.data() + name.size() + 1);  // with its NUL
    return;
  }
  stopped_ = processFile(FoundFile(level.directory.get(), entry.d_name, path_));
  countFile();
}

void FileNavigator::countFile() {
  if (++fileCount_ % kFilesPerProgressStep == 0) services_.progress.addProgressDots(1);
}

void FileNavigator::closeFarLevel() {
  if (levels_.size() <= kMostOpenLevels) return;
  Level& far = levels_[levels_.size() - 1 - kMostOpenLevels];
  if (!far.directory.isOpen()) return;
  far.identity = identityOf(far.directory.get()).value_or(FileIdentity());
  far.directory.reset();
}

/// Finds the directory of `level` again: from its child, or, when the child was moved meanwhile, by
/// its path. What is found must be the same directory. Otherwise its other subdirectories are given
/// up.
void FileNavigator::reopen(Level& level, int child) {
  constexpr int kFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
  const SString path(path_, 0, level.pathLength);
  level.directory = UniqueFd(::openat(child, "..", kFlags));
  if (identityOf(level.directory.get()) == level.identity) return;
  level.directory = UniqueFd(::open(path.cString(), kFlags));
  if (identityOf(level.directory.get()) == level.identity) return;
  level.directory.reset();
  names_.resize(level.firstName);
}

}  // namespace vessant
