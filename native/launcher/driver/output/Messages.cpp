#include "launcher/driver/output/Messages.h"

#include <cstring>

#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr SString::Size kLongestMessage = 1023;
constexpr std::size_t kLongestCode = 5;
constexpr std::string_view kPlaceholder = "%s";

const char* codeOf(int row) {
  return kMessageCatalog[row][0];
}

/// A code of five letters wins over its first two, which other rows have.
int exactRow(const SString& language) {
  for (int row = 0; row < kLanguageCount; ++row) {
    if (std::strncmp(language.cString(), codeOf(row), kLongestCode) == 0) return row;
  }
  return -1;
}

int prefixRow(const SString& language) {
  for (int row = 0; row < kLanguageCount; ++row) {
    if (language.view().starts_with(codeOf(row))) return row;
  }
  return 0;
}

/// The catalog numbers of the launcher's error texts; 34 and 35 are none. -1 for an unknown error.
int messageOf(ErrorId error) {
  constexpr int kFirst = 19;
  constexpr int kSkipped = 2;
  const int number = static_cast<int>(error);
  if (number < 0 || error > ErrorId::TempRootMissing) return -1;
  return kFirst + number + (error >= ErrorId::WriteFailed ? kSkipped : 0);
}

}  // namespace

int Messages::languageIndex() const {
  const SString language = platform_.getEnvironmentVariable("LANG");
  if (language.isEmpty() || language == "C") return 0;
  const int row = exactRow(language);
  return row >= 0 ? row : prefixRow(language);
}

SString Messages::formatMessage(int number, const SString& argument) const {
  if (number < 0 || number > kLastMessage) {
    return "Error displaying message: id(" + longToString(number) + ")";
  }
  SString text = kMessageCatalog[languageIndex()][number];
  const SString::Size place = text.find(kPlaceholder);
  if (place != SString::npos) text.replace(place, kPlaceholder.size(), argument);
  if (text.length() > kLongestMessage) text.resize(kLongestMessage);
  return text;
}

SString Messages::errorText(ErrorId error) const {
  const int number = messageOf(error);
  return number < 0 ? SString() : SString(kMessageCatalog[languageIndex()][number]);
}

SString Messages::formatError(ErrorId error, const SString& argument) const {
  const int number = messageOf(error);
  return number < 0 ? SString() : formatMessage(number, argument);
}

}  // namespace vessant
