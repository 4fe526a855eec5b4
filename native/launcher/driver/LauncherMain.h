// LauncherMain: the run, from the command line to the clean-up. It owns what a run works with,
// hands the command line's and the script's wishes to the objects that fulfil them, and turns what
// fails into the run's result.
//
// runLauncher is the way in: the whole of the program without the process around it.
#pragma once

#include <cstdint>

#include "launcher/base/Deque.h"
#include "launcher/base/SString.h"
#include "launcher/driver/CommandLineParser.h"
#include "launcher/driver/JvmFinder.h"
#include "launcher/driver/JvmInstallation.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/driver/LoadedObjects.h"
#include "launcher/driver/ProgramLaunch.h"
#include "launcher/instructions/InstructionActions.h"

namespace vessant {

class LauncherMain : public InstructionActions, public CommandLineParser::Actions {
 public:
  /// The state must outlive this.
  explicit LauncherMain(LauncherState& state);
  LauncherMain(const LauncherMain&) = delete;
  LauncherMain& operator=(const LauncherMain&) = delete;
  /// Deletes the temporary files and directories and, in an embedded launcher, its own file.
  ~LauncherMain() override;

  /// The whole run. Returns its result, -1 for a LauncherException, which is shown and logged.
  std::int32_t run(const StringDeque& arguments, const SString& launcherFileName);
  /// Runs the instruction script; -1 when there is none.
  std::int32_t runInstructions();

  // Asked for by the command line.
  void extractFiles() override;
  void loadInputFile(const SString& value, CommandLineParser::Outcome& outcome) override;

  // Asked for by the instruction script; the objects that do the work say what each does.
  void throwIfCanceled() const override { services_.run.throwIfCanceled(); }
  void beginProgress() override;
  void findJvm(Display display) override { finder_.findJvm(display); }
  void verifyEmbeddedJvmFile(Display display, std::int32_t fileId) override {
    finder_.verifyEmbeddedJvmFile(display, fileId);
  }
  void installEmbeddedJvm(std::int32_t mode) override { installation_.installEmbeddedJvm(mode); }
  std::int32_t launchWithJvmFile(const SString& fileName, std::int16_t seconds) override {
    return program_.launchWithJvmFile(fileName, seconds);
  }
  std::int32_t launchWithEmbeddedJvmFile(std::int32_t fileId, std::int16_t seconds) override {
    return program_.launchWithEmbeddedJvmFile(fileId, seconds);
  }
  void runEmbeddedLauncher(std::int32_t fileId) override { program_.runEmbeddedLauncher(fileId); }
  [[nodiscard]] SString getStringVariable(std::int32_t number) const override {
    return state_.variables.getStringVariable(number);
  }
  void setStringVariable(std::int32_t number, const SString& value) override {
    state_.variables.setStringVariable(number, value);
  }
  [[nodiscard]] std::int32_t getNumericVariable(std::int32_t number) const override {
    return state_.variables.getNumericVariable(number);
  }
  void setNumericVariable(std::int32_t number, std::int32_t value) override {
    state_.variables.setNumericVariable(number, value);
  }

  /// The byte that says how the program's exit status is to be taken.
  [[nodiscard]] std::int32_t modeByte() { return services_.modeByte.ownModeByte(); }
  [[nodiscard]] Console& console() { return services_.console; }

 private:
  std::int32_t runDriver(const StringDeque& arguments);

  LauncherState& state_;
  LauncherServices services_;
  LoadedObjects objects_;
  JvmFinder finder_;
  JvmInstallation installation_;
  ProgramLaunch program_;
};

/// Runs the launcher with the process's arguments and returns its result. The clean-up has run when
/// it returns, also by an exception.
int runLauncher(int argumentCount, const char* const* arguments, LauncherState& state);

/// The one line that tells of a failure which nothing else has told of, and the result for it.
int reportUnexpectedFailure(const LauncherState& state);

}  // namespace vessant
