// Backslash-u escapes and the way back into the encoding of the locale.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/base/TextUtil.h"
#include "support/FakeRun.h"
#include "support/ProcessScope.h"

namespace vessant::test {
namespace {

using namespace std::string_view_literals;
using Codes = std::vector<std::uint32_t>;

/// Another character set for a while, both in use and in the environment.
class LocaleScope {
 public:
  explicit LocaleScope(const char* name)
      : environment_("LC_ALL", name),
        before_(std::setlocale(LC_CTYPE, nullptr)),
        isThere_(std::setlocale(LC_CTYPE, name) != nullptr) {}
  LocaleScope(const LocaleScope&) = delete;
  LocaleScope& operator=(const LocaleScope&) = delete;
  ~LocaleScope() { std::setlocale(LC_CTYPE, before_.c_str()); }

  [[nodiscard]] bool isThere() const { return isThere_; }

 private:
  ScopedEnvironment environment_;
  std::string before_;
  bool isThere_;
};

/// The decoded codes without the zeros behind them; checks the number of elements on the way.
Codes decoded(std::string_view text) {
  Codes codes = decodeUnicodeEscapes(SString(text));
  EXPECT_EQ(codes.size(), text.size() + 1);
  EXPECT_EQ(codes.back(), 0U);
  while (!codes.empty() && codes.back() == 0) codes.pop_back();
  return codes;
}

Codes bytesOf(std::string_view text) {
  Codes codes;
  for (const char byte : text) codes.push_back(static_cast<unsigned char>(byte));
  return codes;
}

TEST(DecodeUnicodeEscapes, AnEscapeIsOneCharacter) {
  EXPECT_EQ(decoded("\\u0041x"), (Codes{0x41, 'x'}));
  EXPECT_EQ(decoded("\\u00e9"), (Codes{0xE9}));
  EXPECT_EQ(decoded("a\\U20ACb"), (Codes{'a', 0x20AC, 'b'}));
  EXPECT_EQ(decoded("\\u0041\\u0042"), (Codes{0x41, 0x42}));
  EXPECT_EQ(decoded("\\u00410"), (Codes{0x41, '0'}));
}

TEST(DecodeUnicodeEscapes, WhatIsNoEscapeStaysAsItIs) {
  for (const std::string_view text :
       {""sv, "plain"sv, "\\u004"sv, "\\u"sv, "\\"sv, "a\\"sv, "\\n"sv, "\\x0041"sv, "\\ u0041"sv,
        "\\uxyzw"sv, "\\u-x41"sv, "\\u    "sv, "u0041x"sv, "\xc3\xa9\xff"sv}) {
    EXPECT_EQ(decoded(text), bytesOf(text)) << text;
  }
}

TEST(DecodeUnicodeEscapes, ABackslashBeforeAnEscapeStaysInFrontOfIt) {
  EXPECT_EQ(decoded("\\\\u0041"), (Codes{'\\', 0x41}));
  EXPECT_EQ(decoded("\\u\\u0041"), (Codes{'\\', 'u', 0x41}));
}

TEST(DecodeUnicodeEscapes, TheNumberIsReadAsTheCLibraryScansIt) {
  EXPECT_EQ(decoded("\\u41zzx"), (Codes{0x41, 'x'}));
  EXPECT_EQ(decoded("\\u 41 x"), (Codes{0x41, 'x'}));
  EXPECT_EQ(decoded("\\u0x41x"), (Codes{0x41, 'x'}));
  EXPECT_EQ(decoded("\\u+041x"), (Codes{0x41, 'x'}));
  EXPECT_EQ(decoded("\\u-001x"), (Codes{0xFFFFFFFF, 'x'}));
}

TEST(DecodeUnicodeEscapes, ACodeOfZeroIsStoredToo) {
  EXPECT_EQ(decoded("a\\u0000b"), (Codes{'a', 0, 'b'}));
}

TEST(DecodeUnicodeEscapes, TheResultIsFilledWithZeros) {
  EXPECT_EQ(decodeUnicodeEscapes("\\u0041x"), (Codes{0x41, 'x', 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(decodeUnicodeEscapes(""), Codes{0});
}

TEST(DecodeUnicodeEscapes, AgreesWithTheCLibraryOnAllFourCharacters) {
  constexpr std::string_view kAlphabet = "0 1aFxX+-g\t\vZ";
  constexpr std::size_t kCount = kAlphabet.size();
  for (std::size_t i = 0; i < kCount * kCount * kCount * kCount; ++i) {
    const char digits[] = {kAlphabet[i % kCount], kAlphabet[i / kCount % kCount],
                           kAlphabet[i / kCount / kCount % kCount],
                           kAlphabet[i / kCount / kCount / kCount], '\0'};
    const std::string text = std::string("\\u") + digits;
    unsigned code = 0;
    const bool isNumber = std::sscanf(digits, "%x", &code) == 1;
    const Codes expected = isNumber ? Codes{code} : bytesOf(text);
    ASSERT_EQ(decodeUnicodeEscapes(SString(std::string_view(text)))[0], expected[0]) << text;
  }
}

SString shown(const char* text) {
  return wideToText(decodeUnicodeEscapes(text));
}

TEST(WideToText, InThePlainLocaleEverythingBeyondAsciiIsAQuestionMark) {
  const LocaleScope locale("C");
  ASSERT_TRUE(locale.isThere());
  EXPECT_EQ(shown("Setup 1.0 ~"), "Setup 1.0 ~");
  EXPECT_EQ(shown("\\u0041\\u00e9\\u20ACz"), "A??z");
  EXPECT_EQ(shown("caf\xe9"), "caf?");
}

TEST(WideToText, TheCharacterSetOfTheEnvironmentIsTakenWhenACharacterNeedsIt) {
  if (!LocaleScope("C.UTF-8").isThere()) GTEST_SKIP() << "this machine has no C.UTF-8 locale";
  const LocaleScope before("C");
  const ScopedEnvironment environment("LC_ALL", "C.UTF-8");
  EXPECT_EQ(shown("Setup"), "Setup");
  EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C") << "ASCII needs none";
  EXPECT_EQ(shown("caf\\u00e9"), "caf\xc3\xa9");
}

TEST(WideToText, InAUtf8LocaleEveryCharacterIsShown) {
  const LocaleScope locale("C.UTF-8");
  if (!locale.isThere()) GTEST_SKIP() << "this machine has no C.UTF-8 locale";
  EXPECT_EQ(shown("caf\\u00e9 \\u20ac"), "caf\xc3\xa9 \xe2\x82\xac");
  EXPECT_EQ(shown("\\u65e5\\u672c"), "\xe6\x97\xa5\xe6\x9c\xac");
  EXPECT_EQ(wideToText({0x1F600, 'x', 0}), "\xf0\x9f\x98\x80x");
  EXPECT_EQ(shown("caf\xe9"), "caf\xc3\xa9") << "a byte stands for the character of that number";
}

TEST(WideToText, WhatNoEncodingCanShowIsAQuestionMark) {
  for (const char* name : {"C", "C.UTF-8"}) {
    const LocaleScope locale(name);
    if (!locale.isThere()) continue;
    EXPECT_EQ(shown("a\\ud800b"), "a?b") << name;
    EXPECT_EQ(shown("a\\u-001b"), "a?b") << name;
  }
}

TEST(WideToText, EndsAtTheFirstZero) {
  EXPECT_EQ(shown("a\\u0000b"), "a");
  EXPECT_EQ(wideToText({'a', 'b', 0, 'c', 0}), "ab");
  EXPECT_EQ(wideToText({0}), "");
  EXPECT_EQ(wideToText({}), "");
}

TEST(WideToText, AgreesWithTheCLibraryOnWhatItCanConvert) {
  const LocaleScope locale("C.UTF-8");
  if (!locale.isThere()) GTEST_SKIP() << "this machine has no C.UTF-8 locale";
  const std::wstring wide = L"A\u00e9\u0416\u20ac\U0001F600 end";
  char expected[64] = {};
  ASSERT_NE(std::wcstombs(expected, wide.c_str(), sizeof(expected)), static_cast<std::size_t>(-1));
  Codes codes(wide.begin(), wide.end());
  codes.push_back(0);
  EXPECT_EQ(wideToText(codes), expected);
}

}  // namespace
}  // namespace vessant::test
