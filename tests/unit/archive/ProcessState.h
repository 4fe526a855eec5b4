// State of the whole process that a test changes for a while.
#pragma once

#include <csignal>
#include <cstddef>
#include <optional>
#include <string>

#include <sys/resource.h>
#include <sys/types.h>

namespace vessant::test {

class ScopedUmask {
 public:
  explicit ScopedUmask(mode_t mask);
  ScopedUmask(const ScopedUmask&) = delete;
  ScopedUmask& operator=(const ScopedUmask&) = delete;
  ~ScopedUmask();

 private:
  mode_t before_;
};

class ScopedCurrentDirectory {
 public:
  explicit ScopedCurrentDirectory(const std::string& directory);
  ScopedCurrentDirectory(const ScopedCurrentDirectory&) = delete;
  ScopedCurrentDirectory& operator=(const ScopedCurrentDirectory&) = delete;
  ~ScopedCurrentDirectory();

 private:
  std::string before_;
};

/// An environment variable; without a value it is not set.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::optional<std::string>& value);
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable();

 private:
  const char* name_;
  std::optional<std::string> before_;
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

[[nodiscard]] mode_t permissionsOf(const std::string& path);
[[nodiscard]] std::size_t openDescriptors();

}  // namespace vessant::test
