// A real Java of the machine, for the tests that need one.
#pragma once

#include <optional>
#include <string>

namespace vessant::test {

struct RealJdk {
  std::string home;
  /// As "java.version" has it.
  std::string version;

  /// 8, 11, 17 ...
  [[nodiscard]] int feature() const;
};

/// The Java of the PATH, or one of those in the place where distributions put them.
[[nodiscard]] std::optional<RealJdk> findRealJdk();

}  // namespace vessant::test
