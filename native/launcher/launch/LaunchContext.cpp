#include "launcher/launch/LaunchContext.h"

#include <cerrno>
#include <cstdio>

#include <unistd.h>

#include "launcher/archive/NewFile.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr std::size_t kBlockSize = 4096;

/// Writes a block straight, so that a full disk shows at its own block. Returns 0 or the number of
/// the error.
int writeBlock(int target, const char* block, std::size_t length) {
  std::size_t written = 0;
  while (written < length) {
    const ssize_t count = ::write(target, block + written, length - written);
    if (count < 0 && errno != EINTR) return errno;
    if (count > 0) written += static_cast<std::size_t>(count);
  }
  return 0;
}

/// Copies to the end of the source, also past a block that cannot be written: the source may be a
/// pipe, whose writer is not to wait for ever. Returns 0 or the number of the last write error.
int copyStream(std::FILE* source, int target, const CancelFlag& cancelFlag) {
  char block[kBlockSize];
  int error = 0;
  std::size_t count = 0;
  while (!cancelFlag.isSet() && (count = std::fread(block, 1, sizeof(block), source)) > 0) {
    const int failure = writeBlock(target, block, count);
    if (failure != 0) error = failure;
  }
  return error;
}

[[noreturn]] void throwWriteError(const RunServices& services, const SString& path, int error) {
  services.log("Could not write " + path + " :  " + systemErrorText(error), LogLevel::Error);
  throw LauncherException(services.messages.errorText(ErrorId::WriteFailed) + longToString(error) +
                          services.messages.errorText(ErrorId::TempSpaceHint));
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
  const SString directory = context.tempFiles.createTempDir();
  const SString name = fileNameOf(file);
  NewFile to(directory, name, UniqueFd());
  if (to.error() != 0) return path;
  path = joinPath(directory, name);
  int error = copyStream(from.get(), to.fd(), context.services.cancelFlag);
  const int closeError = to.close();  // a file system on the network may tell of a full disk here
  if (error == 0) error = closeError;
  if (error != 0) throwWriteError(context.services, path, error);
  context.services.throwIfCanceled();
  return path;
}

}  // namespace vessant
