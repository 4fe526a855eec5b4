// Reads the launcher's options off its command line. What is no option of the launcher is for the
// Java program.
#pragma once

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/driver/OneShotActions.h"
#include "launcher/driver/output/Console.h"
#include "launcher/driver/output/Messages.h"

namespace vessant {

class CommandLineParser {
 public:
  /// Options set fields of the state or ask for one of the actions. All must outlive this.
  CommandLineParser(LauncherState& state, OneShotActions& actions, Console& console,
                    const Messages& messages)
      : state_(state), actions_(actions), console_(console), messages_(messages) {}

  /// Applies every argument from first to last; an error of an option does not stop it. Throws what
  /// the one-shot actions throw.
  DriverOutcome parse(const StringDeque& arguments);

 private:
  using Handler = void (CommandLineParser::*)(const SString& value);
  struct Option {
    const char* name;
    bool takesValue;
    Handler apply;
    /// What a missing value does; null: nothing.
    Handler applyMissing;
  };
  static const Option kOptions[];

  static const Option* findOption(const SString& argument);
  void applyAt(const StringDeque& arguments, std::int32_t& index);
  [[nodiscard]] static bool asksForSilence(const StringDeque& arguments);
  void fail(const SString& message);

  void setLog(const SString& value);
  void missingLog(const SString& value);
  void setOriginal(const SString& value);
  void missingOriginal(const SString& value);
  void setTempDirectory(const SString& value) { state_.tempDirectory = value; }
  void setSilent(const SString& value);
  void setSilentAndPass(const SString& value);
  void setJavaHome(const SString& value) { state_.javaHome = value; }
  void extract(const SString& value);
  void loadInput(const SString& value);
  void missingInput(const SString& value);
  void showVersion(const SString& value);
  void setJavaConsole(const SString& value);
  void setConsoleAndPass(const SString& value);
  void setClassPathPrefix(const SString& value) { state_.classPathPrefix = value; }
  void setClassPathSuffix(const SString& value) { state_.classPathSuffix = value; }

  LauncherState& state_;
  OneShotActions& actions_;
  Console& console_;
  const Messages& messages_;
  DriverOutcome outcome_;
  bool silenceAskedFor_ = false;
};

}  // namespace vessant
