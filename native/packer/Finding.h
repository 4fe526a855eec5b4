// Findings: what is wrong, or may be, with an author's files or an installer.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace vessant {

/// An error keeps `pack` from writing; a warning does not.
enum class Severity { Error, Warning };

/// One thing that is wrong, in a sentence that ends with what to do about it where that is known.
struct Finding {
  /// The path as the user named it, or the name that the file has in the installer.
  std::string file;
  /// Counted from 1; 0 when the finding concerns the file as a whole.
  int line = 0;
  Severity severity = Severity::Error;
  std::string text;
  /// Stable, in kebab case: what `--allow` turns off. See findingNames.
  std::string name;
};

/// Collects findings. Names that the user allowed are dropped.
class Findings {
 public:
  Findings() = default;
  explicit Findings(std::vector<std::string> allowed) : allowed_(std::move(allowed)) {}

  /// Drops the finding when its name is allowed.
  void add(Finding finding);
  /// `name` is one of findingNames: those are what `--allow` knows and what pages explain.
  void error(const std::string& file, int line, const char* name, const std::string& text);
  void warning(const std::string& file, int line, const char* name, const std::string& text);

  /// Whether anything but warnings was found.
  [[nodiscard]] bool hasErrors() const;
  [[nodiscard]] bool isEmpty() const { return findings_.empty(); }
  /// By file in the order in which files first turned up, then by line, then in the order of
  /// finding; what was found twice stands once.
  [[nodiscard]] std::vector<Finding> sorted() const;

 private:
  std::vector<std::string> allowed_;
  std::vector<Finding> findings_;
};

/// `FILE:LINE: error: TEXT [name]`, without the line when there is none. No line break at the end;
/// control characters in file names and texts are shown as `\xNN`.
[[nodiscard]] std::string lineOf(const Finding& finding);
/// One line for each.
void printFindings(const Findings& findings, std::ostream& stream);
/// `{"findings": [{"file":, "line":, "severity":, "name":, "text":}, ...]}`, indented.
void printFindingsAsJson(const Findings& findings, std::ostream& stream);

/// Every name that a finding can have, sorted.
[[nodiscard]] const std::vector<std::string>& findingNames();

}  // namespace vessant
