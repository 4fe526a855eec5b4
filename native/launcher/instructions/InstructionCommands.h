// The commands of the instruction script.
#pragma once

#include "launcher/base/SString.h"
#include "launcher/instructions/InstructionScript.h"

namespace vessant {

/// The part of a statement behind its command word, read from left to right.
class StatementArguments {
 public:
  StatementArguments(const SString& statement, SString::Size position)
      : statement_(statement), position_(position) {}

  /// The next token; empty when none is left.
  [[nodiscard]] SString nextToken();
  /// The next token, which may stand in double quotes, blanks included; the quotes stay. Throws
  /// LauncherException, with `context` at the end, when the closing quote is missing.
  [[nodiscard]] SString nextText(const SString& context);
  /// All that is left, trimmed.
  [[nodiscard]] SString rest() const;

 private:
  const SString& statement_;
  SString::Size position_;
};

struct InstructionCommand {
  const char* name;
  void (*execute)(InstructionRun& run, StatementArguments& arguments);
};

/// The command of that name, or null.
[[nodiscard]] const InstructionCommand* findInstructionCommand(const SString& name);

}  // namespace vessant
