// The standard streams of the test's own process, caught or fed for a while.
#pragma once

#include <cstdio>
#include <memory>
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
