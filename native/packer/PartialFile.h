// A file that is written beside its final name and takes that name only when it is whole.
#pragma once

#include <string>
#include <string_view>

#include "launcher/base/SString.h"
#include "launcher/base/StdFile.h"

namespace vessant {

class PartialFile {
 public:
  /// Begins the file that will be called `finalPath`. All operations throw LauncherException with
  /// that path and the system's reason.
  explicit PartialFile(const SString& finalPath);
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;
  /// Removes a file that was not published.
  ~PartialFile();

  void write(std::string_view bytes);
  void close();
  /// Gives the closed file its name, in place of what had it, and makes it executable.
  void publish();

  /// Where the file lies until it is published.
  [[nodiscard]] SString path() const { return partialPath_.c_str(); }

 private:
  [[noreturn]] void fail() const;

  SString finalPath_;
  std::string partialPath_;
  StdFile file_;
  bool published_ = false;
};

}  // namespace vessant
