#include "launcher/driver/output/Log.h"

#include <cstdio>

#include "launcher/base/Handles.h"

namespace vessant {
namespace {

const char* prefixOf(LogLevel level) {
  if (level == LogLevel::Warning) return "WARNING: ";
  if (level == LogLevel::Error) return "ERROR: ";
  return "";
}

}  // namespace

void Log::log(const SString& text, LogLevel level) {
  if (state_.fileName.isEmpty()) return;
  const StdFile file = openFile(state_.fileName, OpenMode::Append);
  if (file == nullptr) return;
  if (!state_.separatorWritten) std::fputs("------------------\n", file.get());
  state_.separatorWritten = true;
  std::fprintf(file.get(), "%s%s\n", prefixOf(level), text.cString());
}

}  // namespace vessant
