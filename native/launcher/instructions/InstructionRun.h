// InstructionRun: one run of an instruction script, as its commands see it. It knows where the run
// stands and what it has come to, and reads the arguments that commands have in common.
//
// The statements are the values of the script's INSTRUCTIONS tag.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "launcher/base/SString.h"
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
  [[nodiscard]] std::string_view statement() const { return statementAt(programCounter_); }
  void goOn() { ++programCounter_; }

  /// Throws InstructionsException with the number of the current statement.
  [[noreturn]] void instructionError(const SString& message) const;

  /// Replaces the @N1@ and @S1@ references in `text`. `context` begins the error messages. A value
  /// that refers to itself ends only when the run is cancelled.
  void substituteVariables(SString& text, std::string_view context) const;
  /// A token with its variables substituted, as a number. `context` begins the error messages.
  [[nodiscard]] std::int32_t numericValue(std::string_view token, std::string_view context) const;
  [[nodiscard]] std::int16_t shortValue(std::string_view token, std::string_view context) const;
  /// 0 or 1.
  [[nodiscard]] bool booleanValue(std::string_view token, std::string_view context) const;
  /// A text that may stand in double quotes, else is cut at the first whitespace; substituted.
  [[nodiscard]] SString textValue(std::string_view text, std::string_view context) const;

  /// The index of the statement that is the label. The first statement is never found. Kept:
  /// scripts begin with a label line that is only a title.
  [[nodiscard]] std::int32_t findLabel(std::string_view label);
  /// Makes the label the current statement, so that the run goes on behind it.
  void jumpTo(std::string_view label) { programCounter_ = findLabel(label); }

  /// What the run returns when it is over: the status of the last launch.
  [[nodiscard]] std::int32_t result() const { return result_; }
  void setResult(std::int32_t result) { result_ = result; }
  [[nodiscard]] InstructionActions& actions() const { return actions_; }

 private:
  using Labels = std::unordered_map<std::string_view, std::int32_t>;

  [[nodiscard]] std::string_view statementAt(std::int32_t index) const {
    return script_.value(statements_, index);
  }
  bool substituteOnce(SString& text, std::string_view context) const;
  void indexLabels();

  InstructionActions& actions_;
  const TagTable& script_;
  TagTable::Place statements_;  // kNowhere for a script without them
  std::int32_t count_;
  std::int32_t programCounter_ = 0;
  std::int32_t result_ = 0;
  std::optional<Labels>
      labels_;  // made by the first jump, so that no other looks through the script
};

}  // namespace vessant
