#include "launcher/driver/output/Log.h"

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>

#include "launcher/base/Handles.h"

namespace vessant {
namespace {

const char* prefixOf(LogLevel level) {
  if (level == LogLevel::Warning) return "WARNING: ";
  if (level == LogLevel::Error) return "ERROR: ";
  return "";
}

/// A pipe is never waited for: one that nobody reads, or whose reader is busy, does without a line.
StdFile openLog(const SString& path) {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC;
  UniqueFd file(::open(path.cString(), kFlags | O_NONBLOCK, 0666));
  struct stat status = {};
  if (!file.isOpen() || ::fstat(file.get(), &status) != 0) return nullptr;
  if (!S_ISFIFO(status.st_mode)) static_cast<void>(::fcntl(file.get(), F_SETFL, O_APPEND));
  StdFile stream(::fdopen(file.get(), "a"));
  if (stream != nullptr) static_cast<void>(file.release());
  return stream;
}

}  // namespace

void Log::log(const SString& text, LogLevel level) {
  if (state_.fileName.isEmpty()) return;
  const StdFile file = openLog(state_.fileName);
  if (file == nullptr) return;
  if (!state_.separatorWritten) std::fputs("------------------\n", file.get());
  state_.separatorWritten = true;
  std::fprintf(file.get(), "%s%s\n", prefixOf(level), text.cString());
}

}  // namespace vessant
