// The part of a statement behind its command word, read from left to right.
#pragma once

#include "launcher/base/SString.h"

namespace vessant {

class StatementArguments {
 public:
  /// The statement is the caller's and must outlive this. Reading starts at `position`, one behind
  /// the character that ended the command word.
  StatementArguments(const SString& statement, SString::Size position)
      : statement_(statement), position_(position) {}

  /// The next token; empty when none is left.
  [[nodiscard]] SString nextToken();
  /// The next text, which may stand in double quotes, blanks included; the quotes stay. Throws
  /// LauncherException, with `context` at the end, when the closing quote is missing.
  [[nodiscard]] SString nextText(const SString& context);
  /// All that is left, trimmed.
  [[nodiscard]] SString rest() const;

 private:
  const SString& statement_;
  SString::Size position_;
};

}  // namespace vessant
