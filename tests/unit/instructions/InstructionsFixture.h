// Runs instruction scripts against a launcher that only records what it is asked to do.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/instructions/InstructionActions.h"
#include "launcher/instructions/InstructionRun.h"
#include "launcher/instructions/Interpreter.h"
#include "launcher/tagfile/TagFile.h"
#include "support/FakeRun.h"

namespace vessant::test {

class RecordingActions : public InstructionActions {
 public:
  void throwIfCanceled() const override;
  void findJvm(Display display) override;
  std::int32_t launchWithEmbeddedJvmFile(std::int32_t fileId, std::int16_t seconds) override;
  void beginProgress() override;
  void installEmbeddedJvm(std::int32_t mode) override;
  std::int32_t launchWithJvmFile(const SString& fileName, std::int16_t seconds) override;
  void verifyEmbeddedJvmFile(Display display, std::int32_t fileId) override;
  void runEmbeddedLauncher(std::int32_t fileId) override;

  [[nodiscard]] SString getStringVariable(std::int32_t number) const override;
  void setStringVariable(std::int32_t number, const SString& value) override;
  [[nodiscard]] std::int32_t getNumericVariable(std::int32_t number) const override;
  void setNumericVariable(std::int32_t number, std::int32_t value) override;

  /// Every operation with its arguments, such as "findJvm(1, 0)".
  std::vector<std::string> calls;
  /// What the launches answer, one after another; 0 when none is left.
  std::vector<std::int32_t> statuses;
  /// The script is cancelled where it looks next.
  std::atomic<bool> canceled = false;
  /// Happens in every operation, after it is recorded.
  std::function<void()> during;

 private:
  void record(std::string_view operation, const std::vector<std::string>& arguments);
  std::int32_t nextStatus();

  std::array<SString, kStringVariables> strings_;
  std::array<std::int32_t, kNumericVariables> numbers_ = {};
};

/// How a script failed. An error without a statement is a LauncherException.
struct ScriptError {
  static constexpr std::int32_t kNoLine = 0;

  std::string message;
  std::int32_t line;
  bool operator==(const ScriptError&) const = default;
};

void PrintTo(const ScriptError& error, std::ostream* out);

/// The error that an operation ends with; a failure when there is none.
[[nodiscard]] ScriptError scriptError(const std::function<void()>& operation);

class InstructionsFixture : public ::testing::Test {
 protected:
  using Statements = std::vector<std::string>;

  /// Runs the statements and returns the result.
  std::int32_t run(const Statements& statements);
  /// Runs statements that end in an error.
  [[nodiscard]] ScriptError errorOf(const Statements& statements);
  /// The same for one statement; it stands in the third line.
  [[nodiscard]] ScriptError errorIn(const std::string& statement);
  static constexpr std::int32_t kLine = 3;

  [[nodiscard]] std::string stringVariable(std::int32_t number) const;

  RecordingActions actions;
};

}  // namespace vessant::test
