// The list of texts.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/base/Deque.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

std::vector<std::string> textsOf(const StringDeque& list) {
  std::vector<std::string> texts;
  for (const SString& text : list) texts.push_back(str(text));
  return texts;
}

TEST(StringDeque, OutOfRangeThereIsTheEmptyString) {
  StringDeque list;
  EXPECT_EQ(&list.getLast(), &SString::empty());
  EXPECT_EQ(&list.get(0), &SString::empty());
  list.add("a");
  EXPECT_EQ(&list.get(-1), &SString::empty());
  EXPECT_EQ(&list.get(1), &SString::empty());
  EXPECT_EQ(list.get(0), "a");
  EXPECT_EQ(list.getLast(), "a");
}

TEST(StringDeque, KeepsACopyOfItsOwn) {
  SString text("abc");
  StringDeque list;
  list.add(text);
  list.insert(0, text);
  text.append("d");
  text.mutableAt(0) = 'X';
  EXPECT_EQ(textsOf(list), (std::vector<std::string>{"abc", "abc"}));
  EXPECT_NE(&list.get(0), &list.get(1));
}

TEST(StringDeque, OutlivesTheTextsItWasGiven) {
  StringDeque list;
  {
    const SString text("abc");
    list.add(text);
  }
  EXPECT_EQ(list.get(0), "abc");
}

TEST(StringDeque, TakesATextOutOfItself) {
  StringDeque list;
  list.add("abc");
  for (int i = 0; i < 40; ++i) list.add(list.get(i));
  list.insert(0, list.getLast());
  EXPECT_EQ(textsOf(list), std::vector<std::string>(42, "abc"));
}

TEST(StringDeque, InsertsOnlyAtAValidIndexOrAppends) {
  StringDeque list;
  list.insert(0, "refused");
  EXPECT_TRUE(list.isEmpty());
  list.insert(-1, "b");
  list.insert(0, "a");
  list.insert(2, "refused");
  list.insert(-1, "c");
  EXPECT_EQ(textsOf(list), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(StringDeque, KeepsTheOrderOfThirtyOneTexts) {
  StringDeque list;
  std::vector<std::string> expected;
  for (int i = 0; i < 31; ++i) {
    expected.push_back(std::to_string(i));
    list.add(SString(std::string_view(expected.back())));
  }
  EXPECT_EQ(list.capacity(), 60);
  EXPECT_EQ(textsOf(list), expected);
}

TEST(StringDeque, ReplacesATextThatIsThere) {
  StringDeque list;
  list.add("a");
  list.set(0, "b");
  list.set(1, "refused");
  list.set(-1, "refused");
  EXPECT_EQ(textsOf(list), std::vector<std::string>{"b"});
}

TEST(StringDeque, FindsTheFirstEqualText) {
  StringDeque list;
  list.add("a");
  list.add("b");
  list.add("b");
  EXPECT_EQ(list.indexOf("b"), 1);
  EXPECT_EQ(list.indexOf("B"), -1);
  EXPECT_EQ(list.indexOf(""), -1);
  EXPECT_EQ(StringDeque().indexOf("a"), -1);
}

TEST(StringDeque, RemovesAndClears) {
  StringDeque list;
  for (const char* text : {"a", "b", "c", "d"}) list.add(text);
  list.removeAt(1);
  list.removeLast();
  list.removeAt(5);
  EXPECT_EQ(textsOf(list), (std::vector<std::string>{"a", "c"}));
  list.clear();
  EXPECT_EQ(list.count(), 0);
  EXPECT_EQ(list.getLast(), "");
}

}  // namespace
}  // namespace vessant::test
