#include <gtest/gtest.h>

#include "launcher/base/SString.h"
#include "support/FakeRun.h"
TEST(Smoke, SString) {
  vessant::SString s("abc");
  EXPECT_EQ(s, "abc");
  s.append(s);
  EXPECT_EQ(s, "abcabc");
}
