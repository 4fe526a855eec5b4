#include "launcher/base/ArgumentReader.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr char kQuote = '"';

void readPlain(SString& result, std::string_view text, SString::Size& position) {
  const std::size_t end = text.find_first_of(kWhitespace, position);
  if (end == std::string_view::npos) {
    result.assign(text);
    position = SString::npos;
  } else {
    result.assign(text.substr(position, end - position));
    position = static_cast<SString::Size>(end);
  }
}

/// npos, as the number that "%ld" shows for it.
std::int64_t printable(SString::Size position) {
  return static_cast<std::int32_t>(position);
}

[[noreturn]] void throwUnterminated(SString::Size position) {
  throw LauncherException(SString("Expected double quote to end argument near ") +
                          longToString(printable(position)));
}

void readQuoted(SString& result, std::string_view text, SString::Size& position,
                SString::Size offset) {
  result.erase();
  while (true) {
    const std::size_t quote = text.find(kQuote, position);
    if (quote == std::string_view::npos) throwUnterminated(position + offset);
    const bool isLast = quote + 1 == text.size();
    const bool doubled = !isLast && text[quote + 1] == kQuote;
    if (!doubled) {
      result.append(text.substr(position, quote - position));
      position = isLast ? SString::npos : static_cast<SString::Size>(quote + 1);
      return;
    }
    if (quote + 2 == text.size()) throwUnterminated(SString::npos);
    result.append(text.substr(position, quote + 1 - position));
    position = static_cast<SString::Size>(quote + 2);
  }
}

}  // namespace

void nextArgument(SString& result, std::string_view text, SString::Size& position,
                  ArgumentForm form, SString::Size offset) {
  if (form == ArgumentForm::Quoted) {
    readQuoted(result, text, position, offset);
  } else {
    readPlain(result, text, position);
  }
}

void nextWord(SString& result, const SString& text, SString::Size& position) {
  result.erase();
  while (position < text.length() && isWideSpaceChar(text.at(position))) ++position;
  const SString::Size start = position;
  while (position < text.length() && !isWideSpaceChar(text.at(position))) ++position;
  if (start < position) result.assign(text, start, position - start);
  if (position < SString::maxSize) ++position;
}

}  // namespace vessant
