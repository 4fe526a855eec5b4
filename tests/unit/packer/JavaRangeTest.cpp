// Ranges of Java versions: what authors may write, what is refused with its reason, and the places
// where such Javas are looked for.

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/jvm/JvmFileText.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

TEST(JavaRange, OneVersionIsTheOldestWanted) {
  const JavaRange range = parseJavaRange("17");
  EXPECT_EQ(range.min, 17);
  EXPECT_FALSE(range.max);
  EXPECT_EQ(describe(range), "Java 17 or newer");
}

TEST(JavaRange, TwoVersionsAreItsEnds) {
  const JavaRange range = parseJavaRange("11-21");
  EXPECT_EQ(range.min, 11);
  EXPECT_EQ(range.max, 21);
  EXPECT_EQ(describe(range), "Java 11 to 21");
  EXPECT_EQ(describe(parseJavaRange("17-17")), "Java 17");
}

TEST(JavaRange, OneEightIsEight) {
  EXPECT_EQ(parseJavaRange("1.8").min, 8);
  EXPECT_EQ(parseJavaRange("1.8-11").max, 11);
}

TEST(JavaRange, WhatIsNoVersionIsRefused) {
  for (const char* text : {"", "x", "17x", "17.0", "-17", "17-", "17 ", " 17", "+17", "1000",
                           "99999999999999999999", "17-21-25", "1.7"}) {
    EXPECT_THAT(thrownMessage([&] { static_cast<void>(parseJavaRange(text)); }),
                HasSubstr("is no Java version such as 17"))
        << text;
  }
}

TEST(JavaRange, WhatTheVerificationClassCannotRunOnIsRefused) {
  EXPECT_EQ(thrownMessage([] { static_cast<void>(parseJavaRange("7")); }),
            "Java 7 is too old: the verification class needs Java 8");
}

TEST(JavaRange, AnEmptyRangeIsRefused) {
  EXPECT_EQ(thrownMessage([] { static_cast<void>(parseJavaRange("21-17")); }),
            "there is no Java that is 21 or newer and 17 or older");
}

TEST(JavaPlaces, LieInTheRange) {
  const std::vector<std::string> places = pathHints({17, 21});
  EXPECT_THAT(places, Contains("/usr/lib/jvm/java-17-openjdk-amd64"));
  EXPECT_THAT(places, Contains("/usr/lib/jvm/temurin-21-jre"));
  EXPECT_THAT(places, Each(Not(HasSubstr("25"))));
  EXPECT_THAT(places, Each(Not(HasSubstr("11"))));
  EXPECT_THAT(platformHints({17, 21}), Contains("JAVA_HOME_17_X64"));
}

TEST(JavaPlaces, BeginBesideTheInstallerAndWithTheNewest) {
  const std::vector<std::string> places = pathHints({17, {}});
  EXPECT_EQ(places.front(), "jre");
  const auto at = [&](const char* place) { return std::find(places.begin(), places.end(), place); };
  EXPECT_LT(at("/usr/lib/jvm/default-java"), at("/usr/lib/jvm/java-21-openjdk"));
  EXPECT_LT(at("/usr/lib/jvm/java-21-openjdk"), at("/usr/lib/jvm/java-17-openjdk"));
  EXPECT_EQ(platformHints({17, {}}).front(), "JAVA_HOME");
}

TEST(JavaPlaces, HaveTheOldNamesOfJava8) {
  EXPECT_THAT(pathHints({8, 8}), Contains("/usr/lib/jvm/java-1.8.0-openjdk"));
  EXPECT_THAT(pathHints({9, {}}), Not(Contains(HasSubstr("1.8"))));
}

TEST(JavaPlaces, CoverTheEndsOfARangeThatIsOutOfUse) {
  EXPECT_THAT(pathHints({12, 13}), Contains("/usr/lib/jvm/java-12-openjdk"));
  EXPECT_THAT(pathHints({12, 13}), Contains("/usr/lib/jvm/java-13-openjdk"));
  EXPECT_LT(pathHints({8, 999}).size(), 500U) << "not one for each number up to the end";
}

TEST(JavaPlaces, AreNamedOnce) {
  std::vector<std::string> places = pathHints({8, {}});
  std::sort(places.begin(), places.end());
  EXPECT_EQ(std::adjacent_find(places.begin(), places.end()), places.end());
}

}  // namespace
}  // namespace vessant::test
