// Runs a real program with exactly the environment that a test gives it.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vessant::test {

struct ProcessResult {
  /// The exit status, or 128 and the number of the signal that ended the process.
  int status = -1;
  std::string out;
  std::string err;
};

struct ProcessRequest {
  /// The program's path and its arguments.
  std::vector<std::string> command;
  /// Nothing is inherited. The default has only a PATH with the system's own programs and LANG=C.
  std::map<std::string, std::string> environment = {{"PATH", "/usr/bin:/bin"}, {"LANG", "C"}};
  /// Where the program starts; empty: where the test runs.
  std::string directory = {};
  std::string input = {};
  /// A program that takes longer is taken for one that hangs: it is killed, and the test fails.
  unsigned timeLimitSeconds = 120;
};

/// Runs the program to its end.
[[nodiscard]] ProcessResult runProcess(const ProcessRequest& request);

}  // namespace vessant::test
