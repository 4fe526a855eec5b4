#include "launcher/linux/LinuxPlatformImpl.h"

#include <cstdio>
#include <cstdlib>
#include <forward_list>
#include <string>
#include <vector>

#include <sys/statvfs.h>
#include <unistd.h>

#include "launcher/base/Deque.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/SignalWait.h"
#include "launcher/base/TextUtil.h"
#include "launcher/linux/CancelSignals.h"
#include "launcher/linux/ChildProcess.h"

namespace vessant {
namespace {

constexpr std::size_t kDirectoryLimit = 256;

constexpr char kQuote = '"';
constexpr char kBackslash = '\\';

class ArgumentScanner {
 public:
  explicit ArgumentScanner(std::string_view text) : text_(text) {}

  /// Moves to the next character that is not whitespace; false when there is none.
  bool skipSpace() {
    while (!atEnd() && isSpaceChar(text_[position_])) ++position_;
    return !atEnd();
  }

  /// Reads from the current character. A quoted section inside an argument is read as an argument
  /// of its own.
  SString readArgument(bool isProgram);

 private:
  [[nodiscard]] bool atEnd() const { return position_ >= text_.size(); }
  /// Takes the character behind a backslash.
  void takeEscaped(SString& argument);

  std::string_view text_;
  std::size_t position_ = 0;
};

SString ArgumentScanner::readArgument(bool isProgram) {
  SString argument;
  const bool isQuoted = text_[position_] == kQuote;
  if (isQuoted) ++position_;
  while (!atEnd()) {
    const char character = text_[position_];
    if (character == kBackslash && !isProgram) {
      takeEscaped(argument);
    } else if (character == kQuote) {
      if (!isQuoted) {
        argument.append(readArgument(isProgram));
        continue;
      }
      ++position_;
      break;
    } else if (!isQuoted && isSpaceChar(character)) {
      break;
    } else {
      argument += character;
      ++position_;
    }
  }
  return argument;
}

void ArgumentScanner::takeEscaped(SString& argument) {
  ++position_;
  if (atEnd()) return;
  const char character = text_[position_];
  if (character != kQuote) argument += kBackslash;
  argument += character;
  ++position_;
}

/// Becomes the command. Returns only when that failed.
void replaceProcess(const SString& command) {
  StringDeque arguments;
  splitCommandLine(arguments, command);
  if (arguments.isEmpty()) return;
  std::vector<char*> vector;
  for (const SString& argument : arguments) {
    vector.push_back(const_cast<char*>(argument.cString()));  // execvp changes none of them
  }
  vector.push_back(nullptr);
  ::execvp(vector.front(), vector.data());
}

}  // namespace

DiskSpace queryDiskSpace(const SString& directory) {
  char current[kDirectoryLimit] = {};
  const char* path = directory.cString();
  if (*path != '/') path = ::getcwd(current, sizeof(current)) == nullptr ? "" : current;
  struct statvfs status = {};
  if (::statvfs(path, &status) != 0) throw LauncherException(systemErrorText());
  return {status.f_frsize, status.f_bavail};
}

/// The byte count is read as signed. Kept: 2 GiB or more needs "less than nothing" and passes,
/// which installers with such archives rely on.
bool fitsOnDisk(std::uint32_t byteCount, std::uint32_t fileCount, const DiskSpace& space) {
  const std::uint64_t fragmentSize = space.fragmentSize == 0 ? 1 : space.fragmentSize;
  const double wholeBlocks =
      static_cast<double>(static_cast<std::int32_t>(byteCount)) / static_cast<double>(fragmentSize);
  std::int64_t blocks = static_cast<std::int32_t>(wholeBlocks);
  const auto files = static_cast<std::int32_t>(fileCount);
  if (files == 1 && byteCount % fragmentSize != 0) ++blocks;
  if (files > 1) blocks += files;
  const double needed = static_cast<double>(blocks) * static_cast<double>(fragmentSize);
  const double available =
      static_cast<double>(fragmentSize) * static_cast<double>(space.availableBlocks);
  return available >= needed;
}

bool isMountedNoExec(const SString& path) {
  struct statvfs status = {};
  // Only a warning hangs on the answer: without one, the program's start tells.
  return ::statvfs(path.cString(), &status) == 0 && (status.f_flag & ST_NOEXEC) != 0;
}

bool splitCommandLine(StringDeque& list, const SString& commandLine) {
  list.clear();
  ArgumentScanner scanner(commandLine);
  while (scanner.skipSpace()) {
    const SString argument = scanner.readArgument(list.isEmpty());
    if (!argument.isEmpty()) list.add(argument);
  }
  return true;
}

ChildResult LinuxPlatformImpl::executeCommand(const ChildCommand& command, ProgressSink& progress) {
  // What is still in the buffer belongs ahead of the child's output, and must not be written twice.
  const CancelFlag never;
  const CancelSignals* signals = CancelSignals::current();
  flushUnlessInterrupted(stdout, signals == nullptr ? never : signals->flag());
  if (command.replaceProcess) {
    replaceProcess(command.command);
    return {};
  }
  return runChildProcess(command, progress);
}

SString LinuxPlatformImpl::getEnvironmentVariable(const SString& name) const {
  return std::getenv(name.cString());
}

void LinuxPlatformImpl::setEnvironmentVariable(const SString& name, const SString& value) {
  if (name.isEmpty()) return;
  // Kept within reach of leak checkers, and never destroyed: the environment is read to the end.
  static auto& settings = *new std::forward_list<std::string>;
  ::putenv(settings.emplace_front((name + "=" + value).view()).data());
}

bool LinuxPlatformImpl::hasFreeSpace(const SString& directory, std::uint32_t byteCount,
                                     std::uint32_t fileCount) const {
  return fitsOnDisk(byteCount, fileCount, queryDiskSpace(directory));
}

bool LinuxPlatformImpl::isNoExec(const SString& path) const {
  return isMountedNoExec(path);
}

}  // namespace vessant
