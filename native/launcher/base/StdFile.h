// C standard I/O streams that close themselves.
#pragma once

#include <cstdio>
#include <memory>

#include "launcher/base/SString.h"

namespace vessant {

struct StreamCloser {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};

/// An owned stream; null when it could not be opened (errno tells why).
using StdFile = std::unique_ptr<std::FILE, StreamCloser>;

enum class OpenMode { Read, Write, Append };

/// Opens a file as bytes. Child processes do not inherit the descriptor.
[[nodiscard]] StdFile openFile(const SString& path, OpenMode mode);

}  // namespace vessant
