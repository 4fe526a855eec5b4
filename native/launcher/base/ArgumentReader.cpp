#include "launcher/base/ArgumentReader.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr char kQuote = '"';

void readPlain(SString& result, const SString& text, SString::Size& position) {
  const SString::Size end = text.findFirstOf(kWhitespace, position);
  if (end == SString::npos) {
    result = text;
  } else {
    result.assign(text, position, end - position);
  }
  position = end;
}

/// npos, as the number that "%ld" shows for it.
std::int64_t printable(SString::Size position) {
  return static_cast<std::int32_t>(position);
}

[[noreturn]] void throwUnterminated(SString::Size position) {
  throw LauncherException(SString("Expected double quote to end argument near ") +
                          longToString(printable(position)));
}

void readQuoted(SString& result, const SString& text, SString::Size& position) {
  result.erase();
  const SString::Size last = text.length() - 1;
  while (true) {
    const SString::Size quote = text.find(kQuote, position);
    if (quote == SString::npos) throwUnterminated(position);
    const bool doubled = quote < last && text.at(quote + 1) == kQuote;
    if (!doubled) {
      result.append(text, position, quote - position);
      position = quote == last ? SString::npos : quote + 1;
      return;
    }
    if (quote + 1 == last) throwUnterminated(SString::npos);
    result.append(text, position, quote + 1 - position);
    position = quote + 2;
  }
}

}  // namespace

void nextArgument(SString& result, const SString& text, SString::Size& position,
                  ArgumentForm form) {
  if (form == ArgumentForm::Quoted) {
    readQuoted(result, text, position);
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
