// Texts with places to fill in.

#include <gtest/gtest.h>

#include "packer/Template.h"

namespace vessant::test {
namespace {

TEST(Template, FillsEachPlace) {
  EXPECT_EQ(filled("<A> and <B>, <A>", {{"A", "1"}, {"B", "2"}}), "1 and 2, 1");
}

TEST(Template, KeepsWhatIsNoPlace) {
  EXPECT_EQ(filled("", {{"A", "1"}}), "");
  EXPECT_EQ(filled("a < b <C> <", {{"A", "1"}}), "a < b <C> <");
  EXPECT_EQ(filled("cat <in >out <A>", {{"A", "1"}}), "cat <in >out 1");
  EXPECT_EQ(filled("<<A>>", {{"A", "1"}}), "<1>");
}

TEST(Template, DoesNotLookAtFillingsAgain) {
  EXPECT_EQ(filled("<A><B>", {{"A", "<B>"}, {"B", "<A>"}}), "<B><A>");
}

}  // namespace
}  // namespace vessant::test
