// An installer of a test's own: packed byte by byte around the real launcher and run as a user runs
// it, from another directory and with a clean environment. Whatever happens, the temporary root
// must be as empty at the end as it was before.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FakeJavaHome.h"
#include "support/LauncherFileBuilder.h"
#include "support/ProcessRunner.h"
#include "support/TempTree.h"

namespace vessant::test {

/// The ids under which the fixture packs its own files.
inline constexpr std::uint32_t kScriptId = 1;
inline constexpr std::uint32_t kLaunchScriptId = 2;
inline constexpr std::uint32_t kJvmFileId = 3;
inline constexpr std::uint32_t kVerificationClassId = 4;

inline constexpr std::string_view kNoJvmFound =
    "A suitable JVM could not be found. Please run the program again using the option "
    "-vs:javahome <JAVA HOME DIR>\n";

/// Starts the found Java with an empty class path and the arguments of the command line.
inline constexpr std::string_view kJavaCommand = "\"@JVM_HOME@/@JVM_EXE@\" %CP%() Main";

/// Prints each argument of the command line in angle brackets.
inline constexpr std::string_view kPrintArguments = "printf '<%s>\\n'";

/// A tag with one value, quoted so that it is read back exactly as it stands here.
[[nodiscard]] std::string tag(std::string_view name, std::string_view value);
/// A tag with a block of values, each quoted.
[[nodiscard]] std::string tagBlock(std::string_view name, const std::vector<std::string>& values);

/// The text with every temporary name cut to its prefix.
[[nodiscard]] std::string maskTempNames(const std::string& text);

void PrintTo(const ProcessResult& result, std::ostream* out);

/// A process that ended with this status after it wrote exactly this, and nothing to its standard
/// error.
MATCHER_P2(Ended, status, out, "") {
  return arg.status == status && arg.out == out && arg.err.empty();
}

/// The advice for a launcher file whose script is to run but is not there.
[[nodiscard]] std::string noInstaller(const std::string& launcherFile);

/// A process that ended with 255 after it wrote exactly this and the advice for the file.
MATCHER_P2(EndedWithoutInstaller, launcherFile, out, "") {
  return arg.status == 255 && arg.out == out && arg.err == noInstaller(launcherFile);
}

class SystemTest : public ::testing::Test {
 protected:
  SystemTest();
  void TearDown() override;

  /// A fake Java home of this version. Its answers come in one piece, so that the launcher shows
  /// the same number of dots on every run.
  std::string javaHome(std::string_view relative, std::string_view version);

  // What is packed.
  void addScript(const std::vector<std::string>& statements);
  /// The program has the console, unless `more` says otherwise.
  void addLaunchScript(std::string_view command, std::string_view more = "DISPLAY_CONSOLE: 1\n");
  /// The JVM file and the verification class.
  void addJvmFile(std::string_view version, std::string_view more = "");
  /// A script that finds a JVM without progress display and launches it, a launch script with
  /// `command`, and a JVM file that leads to a fake Java 17 in "java17".
  void addInstaller(std::string_view command = kJavaCommand);

  /// Writes the launcher file; `run` does so when no test has done it before.
  void pack();

  /// Runs the launcher with the temporary root of the test.
  ProcessResult run(const std::vector<std::string>& arguments = {});
  /// The same with a log, which `log` reads.
  ProcessResult runLogged(const std::vector<std::string>& arguments = {});
  /// Runs the launcher with exactly these arguments.
  ProcessResult runBare(const std::vector<std::string>& arguments = {});
  /// Runs any command in the environment of the test.
  ProcessResult runCommand(const std::vector<std::string>& command);

  [[nodiscard]] std::string log() const;
  /// The log line by line, the separator included.
  [[nodiscard]] std::vector<std::string> logLines() const;
  [[nodiscard]] std::string logName() const { return tree.path("setup.log"); }

  TempTree tree;
  LauncherFileBuilder file;
  std::string launcher = tree.path("app/setup.bin");
  std::string tempRoot = tree.dir("temp");
  std::string startDirectory = tree.dir("elsewhere");
  /// PATH leads nowhere, so that no Java of the machine is ever found.
  std::map<std::string, std::string> environment = {{"PATH", tree.dir("nothing")}, {"LANG", "C"}};
  std::string input;
  unsigned timeLimitSeconds = 120;
};

}  // namespace vessant::test
