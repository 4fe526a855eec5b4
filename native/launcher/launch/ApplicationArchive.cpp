#include "launcher/launch/ApplicationArchive.h"

#include <cerrno>
#include <cstdio>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr std::size_t kBlockSize = 4096;

/// Copies to the end of the source, also past a block that cannot be written. Returns 0 or the
/// number of the last write error.
int copyStream(std::FILE* source, std::FILE* target) {
  char block[kBlockSize];
  int error = 0;
  std::size_t count = 0;
  std::setvbuf(target, nullptr, _IONBF, 0);  // a write error shows at its own block
  while ((count = std::fread(block, 1, sizeof(block), source)) > 0) {
    if (std::fwrite(block, 1, count, target) != count) error = errno;
  }
  return error;
}

}  // namespace

SString embeddedApplicationArchive(LaunchContext& context) {
  SString& path = context.applicationArchive;
  if (path.isEmpty()) path = context.embeddedFiles.extractApplicationArchives();
  return path;
}

SString copiedApplicationArchive(LaunchContext& context, const SString& file) {
  SString& path = context.applicationArchive;
  if (!path.isEmpty()) return path;
  const SString source = joinPath(directoryOf(context.originalLauncherFileName), file);
  const StdFile from = openFile(source, OpenMode::Read);
  if (from == nullptr) return path;
  const SString copy = joinPath(context.tempFiles.createTempDir(), fileNameOf(file));
  const StdFile to = openFile(copy, OpenMode::Write);
  if (to == nullptr) return path;
  path = copy;
  const int error = copyStream(from.get(), to.get());
  if (error == 0) return path;
  const MessageSource& messages = context.services.messages;
  throw LauncherException(messages.errorText(ErrorId::WriteFailed) + longToString(error) +
                          messages.errorText(ErrorId::TempSpaceHint));
}

}  // namespace vessant
