#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "launcher/instructions/InstructionCommands.h"

namespace vessant {
namespace {

constexpr char kQuote = '"';

/// Behind the quote that closes the one at `open`, or npos. A doubled quote closes nothing.
SString::Size endOfQuoted(const SString& text, SString::Size open) {
  SString::Size quote = text.find(kQuote, open + 1);
  while (quote != SString::npos) {
    const bool doubled = quote + 1 < text.length() && text.at(quote + 1) == kQuote;
    if (!doubled) return quote + 1;
    quote = text.find(kQuote, quote + 2);
  }
  return SString::npos;
}

}  // namespace

SString StatementArguments::nextToken() {
  SString token;
  nextWord(token, statement_, position_);
  return token;
}

SString StatementArguments::nextText(const SString& context) {
  while (position_ < statement_.length() && isWideSpaceChar(statement_.at(position_))) ++position_;
  const bool isQuoted = position_ < statement_.length() && statement_.at(position_) == kQuote;
  if (!isQuoted) return nextToken();
  const SString::Size start = position_;
  position_ = endOfQuoted(statement_, start);
  if (position_ == SString::npos) {
    throw LauncherException("Expected ending quote in " + statement_.substr(start) + context);
  }
  return statement_.substr(start, position_ - start);
}

SString StatementArguments::rest() const {
  if (position_ >= statement_.length()) return "";
  return trimmed(statement_.substr(position_));
}

}  // namespace vessant
