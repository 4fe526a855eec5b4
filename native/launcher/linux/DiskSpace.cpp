#include "launcher/linux/DiskSpace.h"

#include <sys/statvfs.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"

namespace vessant {
namespace {

constexpr std::size_t kDirectoryLimit = 256;

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

}  // namespace vessant
