// The readers of arguments: quoted arguments, words, numbers and escapes.

#include "FuzzInput.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vessant::SString text = vessant::fuzz::textOf(data, size);
  vessant::SString word;
  for (vessant::SString::Size at = 0; at < text.length();) vessant::nextWord(word, text, at);
  try {
    vessant::SString::Size at = 0;
    vessant::nextArgument(word, text, at, vessant::ArgumentForm::Quoted);
  } catch (const vessant::LauncherException&) {
  }
  std::int32_t number = 0;
  std::int16_t shortNumber = 0;
  static_cast<void>(vessant::stringToLong(text, number));
  static_cast<void>(vessant::stringToShort(text, shortNumber));
  static_cast<void>(vessant::wideToText(vessant::decodeUnicodeEscapes(text)));
  return 0;
}
