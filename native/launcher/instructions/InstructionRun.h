// InstructionRun: one run of an instruction script, as its commands see it. It knows where the run
// stands and what it has come to, and reads the arguments that commands have in common.
//
// The statements are the values of the script's INSTRUCTIONS tag.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/instructions/InstructionActions.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

/// What a label statement begins with.
inline constexpr char kLabelMark = ':';

class InstructionRun {
 public:
  /// Stands at the first statement with the result 0. Both must outlive the run.
  InstructionRun(const TagFile& script, InstructionActions& actions);

  /// Whether there is no further statement.
  [[nodiscard]] bool isOver() const { return programCounter_ >= count_; }
  [[nodiscard]] const SString& statement() const { return statements_->get(programCounter_); }
  void goOn() { ++programCounter_; }

  /// Throws InstructionsException with the number of the current statement.
  [[noreturn]] void instructionError(const SString& message) const;

  /// Replaces the @N1@ and @S1@ references in `text`. `context` begins the error messages. A value
  /// that refers to itself never ends.
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
  /// Makes the label the current statement, so that the run goes on behind it.
  void jumpTo(const SString& label) { programCounter_ = findLabel(label); }

  /// What the run returns when it is over: the status of the last launch.
  [[nodiscard]] std::int32_t result() const { return result_; }
  void setResult(std::int32_t result) { result_ = result; }
  [[nodiscard]] InstructionActions& actions() const { return actions_; }

 private:
  bool substituteOnce(SString& text, const SString& context) const;

  InstructionActions& actions_;
  const StringDeque* statements_;  // null for a script without statements
  std::int32_t count_;
  std::int32_t programCounter_ = 0;
  std::int32_t result_ = 0;
};

}  // namespace vessant
