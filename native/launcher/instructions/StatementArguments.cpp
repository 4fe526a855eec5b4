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

std::string_view trimmedView(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kWhitespace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhitespace) + 1 - first);
}

}  // namespace vessant
