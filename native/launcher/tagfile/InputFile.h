// The input file of "-vs:in": a tag file that tells the launcher what to do and with which files.
// This is its reading; what an action does is the driver's.
#pragma once

#include "launcher/base/Deque.h"
#include "launcher/base/SString.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

/// The keys of an input file.
namespace inputkey {
inline constexpr const char* kLogFile = "LOGFILE";
inline constexpr const char* kShowProgress = "SHOW_PROGRESS";
inline constexpr const char* kShowFailMessage = "SHOW_FAIL_MSG";
inline constexpr const char* kAction = "ACTION";
inline constexpr const char* kInstructions = "INSTRUCTIONS";
inline constexpr const char* kLaunchScript = "LAUNCHSCRIPT";
inline constexpr const char* kVerifyClassPath = "VERIFY_CLASSPATH";
inline constexpr const char* kVerifyClassName = "VERIFY_CLASS_NAME";
inline constexpr const char* kUiTitle = "UI_TITLE";
inline constexpr const char* kJvm = "JVM";
inline constexpr const char* kVerifyJvmFile = "VERIFY_JVM_FILE";
inline constexpr const char* kVerifyJvmHome = "VERIFY_JVM_HOME";
inline constexpr const char* kInstallJvmExe = "INSTALL_JVM_EXE";
inline constexpr const char* kInstallJvmDest = "INSTALL_JVM_DEST";
}  // namespace inputkey

enum class InputAction { RunInstructions, Search, SearchAll, VerifyJvm, InstallJvm, Unknown };

/// The written name of the action that runs the instruction script.
inline constexpr const char* kRunInstructionsAction = "RUN_INSTRUCTIONS";

/// A view of an input file's tags, which must outlive it.
class InputFile {
 public:
  explicit InputFile(const TagFile& tags) : tags_(tags) {}

  /// The first value of a text key; empty when it is absent.
  [[nodiscard]] SString text(const char* key) const { return tags_.getValue(key); }
  /// Whether a boolean key is a number other than 0.
  [[nodiscard]] bool flag(const char* key) const { return tags_.getBoolean(key, false); }
  [[nodiscard]] InputAction action() const;
  /// The values of "JVM", in order; empty texts included. Null when there are none.
  [[nodiscard]] const StringDeque* jvmFiles() const { return tags_.findValues(inputkey::kJvm); }

 private:
  const TagFile& tags_;
};

}  // namespace vessant
