#include "launcher/jvm/FindFiles.h"

#include "launcher/archive/TempFiles.h"
#include "launcher/base/PathUtil.h"

namespace vessant {
namespace {

/// Whether a file of this name can end in the suffix. It turns nearly every file down, before its
/// path is put together.
bool mayEndIn(const char* name, const SString& suffix) {
  const std::string_view last = suffix.view().substr(suffix.rfind("/") + 1);  // npos + 1 is 0
  return last == name;
}

/// A suffix is a relative path: it must begin a component of the path.
bool endsInComponents(std::string_view path, std::string_view suffix) {
  return path.size() > suffix.size() && path.ends_with(suffix) &&
         path[path.size() - suffix.size() - 1] == kPathSeparator;
}

}  // namespace

FindFiles::FindFiles(const RunServices& services, const StringDeque& suffixes,
                     FileFindListener& listener, const SString& tempRoot)
    : FileNavigator(services, true), suffixes_(suffixes), listener_(listener), skipped_(tempRoot) {
  ensureTrailingSeparator(skipped_);
}

bool FindFiles::processFile(const FoundFile& file) {
  for (const SString& suffix : suffixes_) {
    if (!mayEndIn(file.name(), suffix)) continue;
    if (endsInComponents(file.path(), suffix) && listener_.fileFound(file.path())) return true;
  }
  return false;
}

/// The temporary root carries a separator at its end, which no path of the walk but "/" has: only
/// the default root is left out, unless the temporary root is "/" itself. Kept.
bool FindFiles::skipDirectory(const SString& path) {
  return path == skipped_ || path == kDefaultTempRoot;
}

}  // namespace vessant
