// Ranges of Java versions: what authors may write, and what is refused with its reason.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/jvm/JavaRange.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

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
                testing::HasSubstr("is no Java version such as 17"))
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

}  // namespace
}  // namespace vessant::test
