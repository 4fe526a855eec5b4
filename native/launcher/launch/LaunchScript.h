// LaunchScript: how the Java program is started once a JVM has been chosen.
//
// A command template is turned into a command line for one JVM file in three passes: macro
// functions, %NAME%(...); tags of the JVM file, @TAG@; environment variables, #NAME#. The arguments
// that the launcher was given for the program follow, each in double quotes. The command runs
// through the shell with JAVA_HOME set.
#pragma once

#include <cstdint>

#include "launcher/base/Deque.h"
#include "launcher/base/SString.h"
#include "launcher/launch/JvmTags.h"
#include "launcher/launch/LaunchContext.h"
#include "launcher/launch/MacroHandler.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

class LaunchScript : public MacroHandler {
 public:
  /// Reads the script's tags. The context must outlive the script; the tags are not kept.
  LaunchScript(const TagFile& tags, bool captureOutput, LaunchContext& context);
  /// A script from a bare template. `includeArchives`: the class path has the embedded archives.
  LaunchScript(const SString& command, bool captureOutput, bool includeArchives,
               LaunchContext& context);
  LaunchScript(const LaunchScript&) = delete;
  LaunchScript& operator=(const LaunchScript&) = delete;
  virtual ~LaunchScript() = default;

  /// The command line for a JVM. Throws LauncherException when a macro function is used wrongly.
  [[nodiscard]] SString resolveCommand(JvmTags& jvm);

  /// Runs the program and returns its exit status. `passThroughArguments` may be null;
  /// `javaConsole` runs the program with the console, so that its output is not collected.
  /// Environment variables that the JVM file sets stay set afterwards; JAVA_HOME gets its old value
  /// back (an empty one when it had none), unless the program could not be started at all. Throws
  /// LauncherException for a wrong command, when nothing can be started and, ahead of the start,
  /// when the run is cancelled.
  std::int32_t execute(JvmTags& jvm, const StringDeque* passThroughArguments, bool javaConsole);

  /// The same for a program that the launcher runs for itself: without arguments, reading from an
  /// empty input, and ended with all its children when it goes beyond a limit.
  ChildResult executeLimited(JvmTags& jvm, const ChildLimits& limits);

  /// Resolves % and # macros; only during resolveCommand.
  void handleMacro(MacroText& text, char delimiter, SString::Size end) override;

  [[nodiscard]] const SString& description() const { return description_; }
  /// What the program wrote, over all runs of this script.
  [[nodiscard]] const SString& standardOutput() const { return standardOutput_; }
  [[nodiscard]] const SString& standardError() const { return standardError_; }

 private:
  [[nodiscard]] SString workingDirectory() const;
  void applyWizardEnvironment(const JvmTags& jvm) const;
  ChildResult executeAs(JvmTags& jvm, const StringDeque* passThroughArguments, ChildCommand child);
  ChildResult runCommand(ChildCommand& child);
  void logOutput(ChildEnd end) const;
  void handleFunction(MacroText& text, SString::Size end);
  [[nodiscard]] SString expandArchive(const MacroText& text);

  LaunchContext& context_;
  SString command_;
  bool captureOutput_;
  bool displayConsole_ = false;
  bool autoSetWorkingDir_ = true;
  SString standardOutput_;
  SString standardError_;
  JvmTags* jvm_ = nullptr;  // set while a command is resolved
  bool includeArchives_;
  bool expandingArchive_ = false;
  SString description_;
  SString archive_;
};

}  // namespace vessant
