// Changes to the test's own process that end with their scope: the environment, the current
// directory, the standard streams.
#pragma once

#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace vessant::test {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using ScopedFile = std::unique_ptr<std::FILE, CloseFile>;

/// An unnamed file that holds `text` and stands at its start.
[[nodiscard]] ScopedFile fileWith(const std::string& text = "");
/// Everything in the file; its position stays.
[[nodiscard]] std::string contentOf(std::FILE* file);

class ScopedEnvironment {
 public:
  ScopedEnvironment() = default;
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

/// Catches what this process and its children write on standard output.
class StdoutCapture {
 public:
  StdoutCapture();
  StdoutCapture(const StdoutCapture&) = delete;
  StdoutCapture& operator=(const StdoutCapture&) = delete;
  ~StdoutCapture();

  [[nodiscard]] std::string text() const;

 private:
  ScopedFile file_;
  int before_;
};

/// Makes `text` what standard input holds.
class ScopedInput {
 public:
  explicit ScopedInput(const std::string& text);
  ScopedInput(const ScopedInput&) = delete;
  ScopedInput& operator=(const ScopedInput&) = delete;
  ~ScopedInput();

 private:
  ScopedFile file_;
  int before_;
};

}  // namespace vessant::test
