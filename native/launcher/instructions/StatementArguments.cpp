#include "launcher/instructions/StatementArguments.h"

#include <algorithm>

#include "launcher/base/Exceptions.h"
#include "launcher/base/SString.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr char kQuote = '"';

/// Behind the quote that closes the one at `open`, or npos. A doubled quote closes nothing.
std::size_t endOfQuoted(std::string_view text, std::size_t open) {
  std::size_t quote = text.find(kQuote, open + 1);
  while (quote != std::string_view::npos) {
    const bool doubled = quote + 1 < text.size() && text[quote + 1] == kQuote;
    if (!doubled) return quote + 1;
    quote = text.find(kQuote, quote + 2);
  }
  return std::string_view::npos;
}

constexpr std::size_t kShortest = 2;

char upperCase(char letter) {
  return 'a' <= letter && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

}  // namespace

std::string_view StatementArguments::nextToken() {
  const std::size_t length = statement_.size();
  while (position_ < length && isWideSpaceChar(statement_[position_])) ++position_;
  const std::size_t start = position_;
  while (position_ < length && !isWideSpaceChar(statement_[position_])) ++position_;
  const std::string_view token = statement_.substr(start, position_ - start);
  if (position_ < length) ++position_;
  return token;
}

/// A vertical tab or a form feed is part of a plain text, though both separate tokens.
std::string_view StatementArguments::nextText(std::string_view context) {
  const std::size_t start =
      std::min(statement_.find_first_not_of(kWhitespace, position_), statement_.size());
  const bool isQuoted = start < statement_.size() && statement_[start] == kQuote;
  position_ = isQuoted ? endOfQuoted(statement_, start)
                       : std::min(statement_.find_first_of(kWhitespace, start), statement_.size());
  if (position_ == std::string_view::npos) {
    throw LauncherException(SString("Expected ending quote in ") + statement_.substr(start) +
                            context);
  }
  return statement_.substr(start, position_ - start);
}

std::string_view StatementArguments::rest() const {
  return trimmedView(statement_.substr(position_));
}

VariableSpecification parseVariableSpecification(std::string_view text, std::string_view context,
                                                 std::string_view gap) {
  if (text.size() < kShortest) {
    throw LauncherException(SString(context) + gap +
                            "Variable references must be at least 2 characters (e.g. N1 and S10).");
  }
  const char type = upperCase(text.front());
  if (type != 'N' && type != 'S') {
    throw LauncherException(SString(context) + gap + "Invalid variable reference (" + text +
                            "). Must use N or S as the variable type, e.g. N2 or S1.");
  }
  const std::string_view rest = text.substr(1);
  const std::int32_t most =
      type == 'N' ? InstructionActions::kNumericVariables : InstructionActions::kStringVariables;
  std::int32_t number = 0;
  if (!stringToLong(rest, number) || number < 1 || number > most) {
    throw LauncherException(SString(context) + gap + "Variable number is invalid (" + rest + ")");
  }
  return {type, number};
}

SString variableText(const VariableSpecification& variable, const InstructionActions& actions) {
  if (variable.type == 'S') return actions.getStringVariable(variable.number);
  return longToString(actions.getNumericVariable(variable.number));
}

}  // namespace vessant
