// The tokens of a statement, read from left to right.
#pragma once

#include <cstddef>
#include <string_view>

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

/// `text` without the whitespace of tag files at its ends.
[[nodiscard]] std::string_view trimmedView(std::string_view text);

}  // namespace vessant
