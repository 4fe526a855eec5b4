// LauncherMain: the run, from the parsed command line to the clean-up, and the operations that the
// instruction script and the input file call.
//
// The operations report through the result variables: by convention N1 tells success (1) or failure
// (0), S1 holds the Java home or JVM file found and S2 the JVM file that a search found.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/driver/LauncherServices.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/driver/LoadedObjects.h"
#include "launcher/driver/OneShotActions.h"
#include "launcher/instructions/InstructionActions.h"
#include "launcher/jvm/JVMSearch.h"
#include "launcher/tagfile/InputFile.h"

namespace vessant {

class LauncherMain : public InstructionActions, public OneShotActions {
 public:
  /// The state must outlive this.
  explicit LauncherMain(LauncherState& state);
  LauncherMain(const LauncherMain&) = delete;
  LauncherMain& operator=(const LauncherMain&) = delete;
  /// Deletes the temporary files and directories and, in an embedded launcher, its own file.
  ~LauncherMain() override;

  /// The whole run. Returns its result, -1 for a LauncherException, which is shown and logged.
  std::int32_t run(const StringDeque& arguments, const SString& launcherFileName);

  // One-shot actions of the command line.
  void extractFiles() override;
  void loadInputFile(const SString& value, DriverOutcome& outcome) override;

  // Operations for the instruction script.
  void findJvm(bool showProgress, bool showFailure) override;
  std::int32_t launchWithEmbeddedJvmFile(std::int32_t fileId, std::int16_t seconds) override;
  void beginProgress() override;
  /// Mode 0: without progress display; 1: with it; 2: with it, into a directory the user names.
  void installEmbeddedJvm(std::int32_t mode) override;
  std::int32_t launchWithJvmFile(const SString& fileName, std::int16_t seconds) override;
  void verifyEmbeddedJvmFile(bool showProgress, bool showFailure, std::int32_t fileId) override;
  void runEmbeddedLauncher(std::int32_t fileId) override;
  [[nodiscard]] SString getStringVariable(std::int32_t number) const override;
  void setStringVariable(std::int32_t number, const SString& value) override;
  [[nodiscard]] std::int32_t getNumericVariable(std::int32_t number) const override;
  void setNumericVariable(std::int32_t number, std::int32_t value) override;

  /// Verifies one JVM: the one at `javaHome` or, when that is empty, the one the file describes.
  void verifyJvm(bool showProgress, bool showFailure, JVMFile& jvmFile, const SString& javaHome);
  /// Runs the instruction script; -1 when there is none.
  std::int32_t runInstructions();

  // Actions of the input file. Their results are lines on standard output, also in silence.
  void searchAction(bool showProgress, bool showFailure);
  void searchAllAction(bool showProgress, bool showFailure);
  void verifyJvmAction(bool showProgress, bool showFailure, const SString& jvmFile,
                       const SString& javaHome);
  void installJvmAction(bool showProgress, const SString& installer, const SString& destination);

  /// The byte that says how the program's exit status is to be taken.
  [[nodiscard]] std::int32_t modeByte() { return services_.modeByte.ownModeByte(); }
  [[nodiscard]] Console& console() { return services_.console; }

 private:
  std::int32_t runDriver(const StringDeque& arguments);
  void loadLauncherFile(EmbeddedObjectBuilder* builder);
  void writeExtractedInputFile();
  void openInputFile(const SString& value, TagFile& tags);
  void readInputFile(const SString& value, TagFile& tags);
  void applyInputFile(const InputFile& input);
  void performAction(const InputFile& input, DriverOutcome& outcome);
  void verifyNamedJvm(const InputFile& input, DriverOutcome& outcome);
  void installNamedJvm(const InputFile& input);
  [[noreturn]] void rejectAction(const InputFile& input);

  void showSearchStage(bool showProgress);
  SString writeJvmFile(const JVMMatch& match);
  void printAllMatches(bool showProgress);
  [[nodiscard]] SString chooseDestination(std::int32_t mode);
  void runInstaller(const FileIndexEntry& installer, const SString& destination);
  SString adoptInstalledJvm(const SString& jvmFile, const SString& destination, bool temporary);
  std::int32_t launch(JVMFile& jvmFile, std::int16_t seconds);
  [[nodiscard]] SString embeddedLauncherCommand(const SString& launcher) const;
  [[nodiscard]] SString errorText(ErrorId error) const;
  void logError(const SString& text) { services_.run.log(text, LogLevel::Error); }

  LauncherState& state_;
  LauncherServices services_;
  LoadedObjects objects_;
};

}  // namespace vessant
