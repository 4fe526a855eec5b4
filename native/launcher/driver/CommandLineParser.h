// Reads the launcher's options off its command line. What is no option of the launcher is for the
// Java program.
#pragma once

#include <cstdint>

#include "launcher/base/Deque.h"
#include "launcher/base/SString.h"
#include "launcher/driver/LauncherState.h"

namespace vessant {

class CommandLineParser {
 public:
  /// What the command line leaves to be done: the result so far, and whether the default flow, the
  /// instruction script, is still to run.
  struct Outcome {
    std::int32_t result = 0;
    bool runDefaultFlow = true;
  };

  /// What the command line asks for at once, while it is being read. Both throw LauncherException.
  class Actions {
   public:
    virtual ~Actions() = default;
    /// Writes every embedded file and an "input.tag" that names them into the current directory.
    virtual void extractFiles() = 0;
    /// Loads an input file and performs its action, which decides about the outcome.
    virtual void loadInputFile(const SString& value, Outcome& outcome) = 0;
  };

  /// Options set fields of the state and switch the console and the log, or ask for an action. All
  /// must outlive this.
  CommandLineParser(LauncherState& state, LauncherServices& services, Actions& actions)
      : state_(state), services_(services), actions_(actions) {}

  /// Applies every argument from first to last; an error of an option does not stop it. Throws what
  /// the actions throw.
  Outcome parse(const StringDeque& arguments);

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

  void setLog(const SString& value) { services_.log.setLogFileName(value); }
  void missingLog(const SString& value);
  void setOriginal(const SString& value);
  void missingOriginal(const SString& value);
  void setTempDirectory(const SString& value) { state_.tempDirectory = value; }
  void setSilent(const SString& value);
  void setSilentAndPass(const SString& value);
  void setJavaHome(const SString& value) { state_.javaHome = value; }
  void extract(const SString& value);
  void loadInput(const SString& value) { actions_.loadInputFile(value, outcome_); }
  void missingInput(const SString& value);
  void showVersion(const SString& value);
  void setJavaConsole(const SString& value);
  void setConsoleAndPass(const SString& value);
  void setClassPathPrefix(const SString& value) { state_.classPathPrefix = value; }
  void setClassPathSuffix(const SString& value) { state_.classPathSuffix = value; }

  LauncherState& state_;
  LauncherServices& services_;
  Actions& actions_;
  Outcome outcome_;
  bool silenceAskedFor_ = false;
};

}  // namespace vessant
