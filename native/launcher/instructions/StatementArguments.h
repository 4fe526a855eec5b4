// The parts of a statement: its tokens and texts, read from left to right, and the references to
// the launcher's variables, N1 to N5 and S1 to S10, that they hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "launcher/base/SString.h"
#include "launcher/instructions/InstructionActions.h"

namespace vessant {

/// What the operations return are views of the statement.
class StatementArguments {
 public:
  /// The statement must outlive this. Its first token is the command word.
  explicit StatementArguments(std::string_view statement) : statement_(statement) {}

  /// The next token, up to whitespace (that of C's isspace); empty when none is left.
  [[nodiscard]] std::string_view nextToken();
  /// The next text, which may stand in double quotes, blanks included; the quotes stay. Throws
  /// LauncherException, with `context` at the end, when the closing quote is missing.
  [[nodiscard]] std::string_view nextText(std::string_view context);
  /// All that is left, trimmed.
  [[nodiscard]] std::string_view rest() const;

 private:
  std::string_view statement_;
  /// One behind the character that ended the last token.
  std::size_t position_ = 0;
};

/// Which variable a reference means: its type, and its number from 1 on.
struct VariableSpecification {
  char type;  // 'N' or 'S'
  std::int32_t number;
};

/// Reads a specification such as "N1" or "s10". Throws LauncherException with `context`, `gap` and
/// the reason.
[[nodiscard]] VariableSpecification parseVariableSpecification(std::string_view text,
                                                               std::string_view context,
                                                               std::string_view gap = " ");

/// The variable's value as text.
[[nodiscard]] SString variableText(const VariableSpecification& variable,
                                   const InstructionActions& actions);

}  // namespace vessant
