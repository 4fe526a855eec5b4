// The standard streams of the test's own process, caught or fed for a while.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include <unistd.h>

namespace vessant::test {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using ScopedFile = std::unique_ptr<std::FILE, CloseFile>;

/// An unnamed file that holds `text` and stands at its start.
[[nodiscard]] ScopedFile fileWith(const std::string& text = "");
/// Everything in the file; its position stays.
[[nodiscard]] std::string contentOf(std::FILE* file);

/// Catches what this process and its children write on a standard stream.
class OutputCapture {
 public:
  explicit OutputCapture(int descriptor);
  OutputCapture(const OutputCapture&) = delete;
  OutputCapture& operator=(const OutputCapture&) = delete;
  ~OutputCapture();

  [[nodiscard]] std::string text() const;

 private:
  ScopedFile file_;
  int descriptor_;
  int before_;
};

struct StdoutCapture : OutputCapture {
  StdoutCapture() : OutputCapture(STDOUT_FILENO) {}
};

struct StderrCapture : OutputCapture {
  StderrCapture() : OutputCapture(STDERR_FILENO) {}
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
