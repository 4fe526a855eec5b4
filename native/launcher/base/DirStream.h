// A directory stream that closes itself.
#pragma once

#include <memory>

#include <dirent.h>

#include "launcher/base/SString.h"

namespace vessant {

struct DirCloser {
  void operator()(DIR* stream) const { ::closedir(stream); }
};

/// An owned directory stream; null when the directory could not be opened.
using DirStream = std::unique_ptr<DIR, DirCloser>;

[[nodiscard]] DirStream openDirectory(const SString& path);
/// The next entry other than "." and "..", or null at the end. Good until the next call.
[[nodiscard]] const dirent* nextEntry(const DirStream& stream);

}  // namespace vessant
