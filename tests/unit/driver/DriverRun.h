// A run of the driver inside the test: a real launcher file in a tree of its own, the real services
// of the system, and an environment that says nothing of the machine.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "launcher/driver/LauncherMain.h"
#include "launcher/driver/LauncherState.h"
#include "support/FakeRun.h"
#include "support/LauncherFileBuilder.h"
#include "support/ProcessScope.h"
#include "support/TempTree.h"

namespace vessant::test {

/// The launcher file is "app/setup.bin" of the tree, the log "log.txt", the temporary root "temp".
/// LANG is C, PATH is empty, and there is no JAVA_HOME and no TMPDIR.
class DriverRun {
 public:
  DriverRun();

  // Parts of the launcher file.
  DriverRun& script(const std::vector<std::string>& statements);
  DriverRun& launchScript(const std::string& command, const std::string& more = "");
  DriverRun& jvmFile(std::uint32_t id, const std::string& text);
  DriverRun& verificationClass();
  /// A JVM installer: a shell script.
  DriverRun& jvmInstaller(const std::string& commands);
  /// A Java home in the tree that reports `version`, and its path.
  std::string javaHome(const std::string& name, const std::string& version);

  /// Writes the launcher file and an "in.tag" with the text, and returns the latter's path.
  std::string inputFile(const std::string& text, bool withLog = true);

  /// Writes the launcher file and runs it. What it prints is then in `out`; the launcher stays, so
  /// that its operations can be called.
  std::int32_t run(const std::vector<std::string>& arguments = {});
  /// Does something to the launcher of the last run. What is printed is then in `out`.
  void perform(const std::function<void(LauncherMain&)>& operation);
  /// The text of the exception that the operation ends with; "" when there is none.
  std::string failureOf(const std::function<void(LauncherMain&)>& operation);
  /// Ends the launcher: the clean-up.
  void end() { launcher_.reset(); }

  /// The text of the log; empty when there is none.
  [[nodiscard]] std::string log() const;
  // The result variables S1 to S10 and N1 to N5.
  [[nodiscard]] std::string s(int number) const;
  [[nodiscard]] std::int32_t n(int number) const;
  [[nodiscard]] std::vector<std::string> tempFiles() const { return tree.list("temp"); }

  TempTree tree;
  ScopedEnvironment environment;
  LauncherFileBuilder file;
  LauncherState state;
  std::string launcherFile = tree.path("app/setup.bin");
  std::string out;

 private:
  std::unique_ptr<LauncherMain> launcher_;
};

/// The texts of a list.
[[nodiscard]] std::vector<std::string> texts(const StringDeque& list);
struct ArgumentList : StringDeque {
  explicit ArgumentList(const std::vector<std::string>& arguments);
};
/// A line of the log at the level of an error.
[[nodiscard]] std::string errorLine(const std::string& text);

}  // namespace vessant::test
