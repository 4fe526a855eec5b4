// State of the test's own process that changes until the end of a scope.
#pragma once

#include <csignal>
#include <cstddef>
#include <map>
#include <optional>
#include <string>

#include <sys/resource.h>
#include <sys/types.h>

namespace vessant::test {

class ScopedEnvironment {
 public:
  ScopedEnvironment() = default;
  /// One variable to begin with; without a value it is not set.
  ScopedEnvironment(const std::string& name, const std::optional<std::string>& value);
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
  ~ScopedEnvironment();

  void set(const std::string& name, const std::string& value);
  void unset(const std::string& name);
  /// Puts the variable back at the end, whatever the code under test does to it.
  void keep(const std::string& name);

 private:
  std::map<std::string, std::optional<std::string>> before_;
};

class ScopedDirectory {
 public:
  explicit ScopedDirectory(const std::string& path);
  ScopedDirectory(const ScopedDirectory&) = delete;
  ScopedDirectory& operator=(const ScopedDirectory&) = delete;
  ~ScopedDirectory();

 private:
  int before_;
};

class ScopedUmask {
 public:
  explicit ScopedUmask(mode_t mask);
  ScopedUmask(const ScopedUmask&) = delete;
  ScopedUmask& operator=(const ScopedUmask&) = delete;
  ~ScopedUmask();

 private:
  mode_t before_;
};

/// No file can grow beyond `bytes`; the attempt fails with EFBIG.
class ScopedFileSizeLimit {
 public:
  explicit ScopedFileSizeLimit(rlim_t bytes);
  ScopedFileSizeLimit(const ScopedFileSizeLimit&) = delete;
  ScopedFileSizeLimit& operator=(const ScopedFileSizeLimit&) = delete;
  ~ScopedFileSizeLimit();

 private:
  rlimit before_ = {};
  void (*handler_)(int);
};

/// Makes root an ordinary user.
class ScopedOrdinaryUser {
 public:
  ScopedOrdinaryUser();
  ScopedOrdinaryUser(const ScopedOrdinaryUser&) = delete;
  ScopedOrdinaryUser& operator=(const ScopedOrdinaryUser&) = delete;
  ~ScopedOrdinaryUser();
};

[[nodiscard]] std::size_t openDescriptors();

}  // namespace vessant::test
