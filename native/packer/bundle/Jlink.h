// A runtime of a JDK with no more modules than a program needs.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "packer/jvm/JavaQuestion.h"

namespace vessant {

class JlinkedRuntime {
 public:
  /// Makes the runtime in a temporary directory with the JDK's own jlink. Throws LauncherException
  /// when the JDK has none or cannot do it; what jlink says of it is on standard error then.
  JlinkedRuntime(const JavaFacts& jdk, const std::vector<std::string>& modules);
  JlinkedRuntime(const JlinkedRuntime&) = delete;
  JlinkedRuntime& operator=(const JlinkedRuntime&) = delete;
  /// Removes the runtime.
  ~JlinkedRuntime();

  [[nodiscard]] std::string home() const;

 private:
  std::filesystem::path directory_;
};

}  // namespace vessant
