// InstructionScript runs the small script that drives an installer's default flow: find a JVM,
// verify it, install the bundled one, launch, with variables and jumps.
//
// The statements are the values of the script's INSTRUCTIONS tag. A run begins with the first and
// ends behind the last; the launch commands set the result.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/instructions/InstructionActions.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

class InstructionScript {
 public:
  /// The tags are the caller's and must outlive the script.
  explicit InstructionScript(const TagFile& tags) : tags_(tags) {}
  [[nodiscard]] const TagFile& tags() const { return tags_; }

 private:
  const TagFile& tags_;
};

/// What a label statement begins with.
inline constexpr char kLabelMark = ':';

/// Executes a script from its first statement and returns its result. Throws InstructionsException
/// for an error of the script, with the number of the statement, and LauncherException for other
/// failures. A variable whose value refers to itself never ends.
std::int32_t runInstructions(const InstructionScript& script, InstructionActions& actions);

/// One run of a script: its state, and the readers of arguments that the commands share.
class InstructionRun {
 public:
  /// Both must outlive the run.
  InstructionRun(const InstructionScript& script, InstructionActions& actions);

  std::int32_t run();

  /// Throws InstructionsException with the number of the current statement.
  [[noreturn]] void instructionError(const SString& message) const;

  /// Replaces the @N1@ and @S1@ references in `text`. `context` begins the error messages.
  void substituteVariables(SString& text, const SString& context) const;
  /// A token with its variables substituted, as a number. `context` begins the error messages.
  [[nodiscard]] std::int32_t numericValue(const SString& token, const SString& context) const;
  [[nodiscard]] std::int16_t shortValue(const SString& token, const SString& context) const;
  /// 0 or 1.
  [[nodiscard]] bool booleanValue(const SString& token, const SString& context) const;
  /// A text that may stand in double quotes, else is cut at the first whitespace; substituted.
  [[nodiscard]] SString textValue(const SString& text, const SString& context) const;

  /// The index of the statement that is the label. The first statement is never found. Kept:
  /// scripts begin with a label line that is only a title.
  [[nodiscard]] std::int32_t findLabel(const SString& label) const;
  /// Goes on with the statement behind the label.
  void jumpTo(const SString& label) { programCounter_ = findLabel(label); }
  void setResult(std::int32_t result) { result_ = result; }
  [[nodiscard]] InstructionActions& actions() const { return actions_; }

 private:
  void execute(const SString& statement);
  bool substituteOnce(SString& text, const SString& context) const;

  InstructionActions& actions_;
  const StringDeque* statements_;  // null for a script without statements
  std::int32_t count_;
  std::int32_t programCounter_ = 0;
  std::int32_t result_ = 0;
};

}  // namespace vessant
