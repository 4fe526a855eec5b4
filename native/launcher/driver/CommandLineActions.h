// What the command line asks for at once: InputFileActions does what an input file says, and
// PackageExtraction writes the files that a launcher file carries, together with such an input
// file.
#pragma once

#include "launcher/archive/LauncherFormat.h"
#include "launcher/base/SString.h"
#include "launcher/driver/CommandLineParser.h"
#include "launcher/driver/JvmFinder.h"
#include "launcher/driver/JvmInstallation.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/driver/LoadedObjects.h"
#include "launcher/instructions/InstructionActions.h"
#include "launcher/tagfile/InputFile.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

/// "-vs:in". An input file says which files the launcher works with and what it does. The results
/// of its actions are lines on standard output, also in silence, because programs read them.
class InputFileActions {
 public:
  /// All must outlive this.
  InputFileActions(LauncherState& state, LauncherServices& services, LoadedObjects& objects)
      : state_(state),
        services_(services),
        objects_(objects),
        finder_(state, services, objects),
        installation_(state, services) {}

  /// Reads the input file that the command line names, applies its settings, loads the launcher
  /// file and performs the action, which decides whether the default flow runs. Throws
  /// LauncherException; what is wrong with the input file has then been shown once.
  void loadInputFile(const SString& value, CommandLineParser::Outcome& outcome);

 private:
  void readInputFile(const SString& value, TagFile& tags);
  void openInputFile(const SString& value, TagFile& tags);
  void applySettings(const InputFile& input);
  void showDisplay(Display display);

  void performAction(const InputFile& input, Display display, CommandLineParser::Outcome& outcome);
  void searchAction(Display display);
  void searchAllAction(Display display);
  void printAllMatches(Display display);
  /// False when the input file lacks one of the keys.
  [[nodiscard]] bool verifyJvmAction(Display display, const InputFile& input);
  void installJvmAction(Display display, const InputFile& input);
  [[noreturn]] void rejectAction(const InputFile& input);

  LauncherState& state_;
  LauncherServices& services_;
  LoadedObjects& objects_;
  JvmFinder finder_;
  JvmInstallation installation_;
};

/// "-vs:extract". Writes what the launcher file carries into the current directory together with an
/// input file, with which the same scripts run from disk.
class PackageExtraction {
 public:
  /// All must outlive this.
  PackageExtraction(LauncherState& state, LauncherServices& services, LoadedObjects& objects)
      : state_(state), services_(services), objects_(objects) {}

  /// Reads the index, without the objects that it describes, and writes everything. Throws
  /// LauncherException.
  void extractFiles();

 private:
  void writeExtractedInputFile();

  LauncherState& state_;
  LauncherServices& services_;
  LoadedObjects& objects_;
};

}  // namespace vessant
