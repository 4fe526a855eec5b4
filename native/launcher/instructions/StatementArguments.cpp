#include "launcher/instructions/StatementArguments.h"

#include <algorithm>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"

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

/// A vertical tab or a form feed is part of a plain text, though both separate tokens.
SString::Size endOfPlain(const SString& text, SString::Size start) {
  return std::min(text.findFirstOf(kWhitespace, start), text.length());
}

}  // namespace

SString StatementArguments::nextToken() {
  SString token;
  nextWord(token, statement_, position_);
  return token;
}

SString StatementArguments::nextText(const SString& context) {
  while (position_ < statement_.length() && isSpaceChar(statement_.at(position_))) ++position_;
  if (position_ >= statement_.length()) return "";
  const SString::Size start = position_;
  if (statement_.at(start) != kQuote) {
    position_ = endOfPlain(statement_, start);
    return statement_.substr(start, position_ - start);
  }
  position_ = endOfQuoted(statement_, start);
  if (position_ == SString::npos) {
    throw LauncherException("Expected ending quote in " + statement_.substr(start) + context);
  }
  return statement_.substr(start, position_ - start);
}

SString StatementArguments::rest() const {
  if (position_ >= statement_.length()) return "";  // the command word ended the statement
  return trimmed(statement_.substr(position_));
}

}  // namespace vessant
