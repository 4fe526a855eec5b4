// Numbers to texts and back, as the C library's formats "%ld" and "%hd" do on 32-bit longs.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "launcher/base/TextUtil.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

using namespace std::string_view_literals;

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

TEST(LongToString, WritesDecimals) {
  EXPECT_EQ(longToString(0), "0");
  EXPECT_EQ(longToString(-1), "-1");
  EXPECT_EQ(longToString(42), "42");
  EXPECT_EQ(longToString(kMost), "2147483647");
  EXPECT_EQ(longToString(kLeast), "-2147483648");
  EXPECT_EQ(longToString(4294967295), "4294967295");
}

TEST(StringToLong, ReadsTheNumberAtTheStart) {
  const std::pair<std::string_view, std::int32_t> table[] = {{"0", 0},
                                                             {"42", 42},
                                                             {"-42", -42},
                                                             {"+42", 42},
                                                             {" \t\n\v\f\r 7", 7},
                                                             {"12abc", 12},
                                                             {"12 34", 12},
                                                             {"1.9", 1},
                                                             {"007", 7},
                                                             {"0x10", 0},
                                                             {"9\0005"sv, 9},
                                                             {"2147483647", kMost},
                                                             {"2147483648", kMost},
                                                             {"-2147483648", kLeast},
                                                             {"-2147483649", kLeast},
                                                             {"4294967296", kMost},
                                                             {"99999999999999999999999", kMost},
                                                             {"-99999999999999999999999", kLeast}};
  for (const auto& [text, expected] : table) {
    std::int32_t number = 77;
    EXPECT_TRUE(stringToLong(SString(text), number)) << text;
    EXPECT_EQ(number, expected) << text;
  }
}

TEST(StringToLong, WithoutANumberChangesNothing) {
  for (const std::string_view text :
       {""sv, " "sv, "abc"sv, "-"sv, "+"sv, "- 1"sv, "+-1"sv, ".5"sv, "\0001"sv,
        "\xa0"
        "1"sv}) {
    std::int32_t number = 77;
    std::int16_t shortNumber = 78;
    EXPECT_FALSE(stringToLong(SString(text), number)) << text;
    EXPECT_FALSE(stringToShort(SString(text), shortNumber)) << text;
    EXPECT_EQ(number, 77);
    EXPECT_EQ(shortNumber, 78);
  }
}

TEST(StringToShort, TakesTheLowSixteenBits) {
  const std::pair<std::string_view, std::int16_t> table[] = {{"0", 0},
                                                             {"-1", -1},
                                                             {"32767", 32767},
                                                             {"32768", -32768},
                                                             {"65535", -1},
                                                             {"65536", 0},
                                                             {"70000", 4464},
                                                             {"-32769", 32767},
                                                             {" 12 and", 12},
                                                             {"2147483648", 0},
                                                             {"+5", 5},
                                                             {"9223372036854775807", -1},
                                                             {"-9223372036854775807", 1}};
  for (const auto& [text, expected] : table) {
    std::int16_t number = 77;
    EXPECT_TRUE(stringToShort(SString(text), number)) << text;
    EXPECT_EQ(number, expected) << text;
  }
}

// The C library itself as the judge; its own long has 64 bits here.
void compareWithScanning(const std::string& text) {
  SCOPED_TRACE(text);
  std::int16_t expectedShort = 77;
  const bool isNumber = std::sscanf(text.c_str(), "%hd", &expectedShort) == 1;
  std::int16_t shortNumber = 77;
  EXPECT_EQ(stringToShort(SString(std::string_view(text)), shortNumber), isNumber);
  EXPECT_EQ(shortNumber, expectedShort);

  long expectedLong = 77;
  EXPECT_EQ(std::sscanf(text.c_str(), "%ld", &expectedLong) == 1, isNumber);
  std::int32_t number = 77;
  EXPECT_EQ(stringToLong(SString(std::string_view(text)), number), isNumber);
  EXPECT_EQ(number, std::clamp<long>(expectedLong, kLeast, kMost));
}

TEST(StringToNumber, AgreesWithTheCLibrary) {
  std::mt19937 random(1);
  constexpr std::string_view kAlphabet = "0123456789 +-\tx";
  for (int i = 0; i < 20000; ++i) {
    std::string text = i % 2 == 0 ? "" : "-";
    for (std::size_t length = random() % 24; length > 0; --length) {
      // Mostly digits, so that large numbers come up.
      text += kAlphabet[random() % (random() % 8 == 0 ? kAlphabet.size() : 10)];
    }
    compareWithScanning(text);
  }
}

TEST(StringToNumber, AgreesWithTheCLibraryAroundTheLimits) {
  for (const char* digits :
       {"3276", "6553", "214748364", "429496729", "922337203685477580", "1844674407370955161"}) {
    for (char last = '0'; last <= '9'; ++last) {
      compareWithScanning(std::string(digits) + last);
      compareWithScanning(std::string("-") + digits + last);
    }
  }
}

}  // namespace
}  // namespace vessant::test
