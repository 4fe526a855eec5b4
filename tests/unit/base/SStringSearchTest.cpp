// Searching a string, forwards and backwards.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/base/SString.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

constexpr SString::Size npos = SString::npos;

TEST(SStringFind, TheEmptyTextIsFoundUpToTheEnd) {
  const SString text("abc");
  EXPECT_EQ(text.find(""), 0U);
  EXPECT_EQ(text.find("", 3), 3U);
  EXPECT_EQ(text.find("", 4), npos);
  EXPECT_EQ(text.rfind("", 10), 3U);
  EXPECT_EQ(text.rfind("", 1), 1U);
  EXPECT_EQ(SString().find(""), 0U);
  EXPECT_EQ(SString().rfind(""), 0U);
}

TEST(SStringFind, TextFromAPosition) {
  const SString text("abcabcabd");
  EXPECT_EQ(text.find("abc"), 0U);
  EXPECT_EQ(text.find("abc", 1), 3U);
  EXPECT_EQ(text.find("abd"), 6U);
  EXPECT_EQ(text.find("abd", 7), npos);
  EXPECT_EQ(text.find("abcabcabdx"), npos);
  EXPECT_EQ(text.find("a", 9), npos);
  EXPECT_EQ(text.find("a", npos), npos);
  EXPECT_EQ(text.find('c'), 2U);
  EXPECT_EQ(text.find('c', 3), 5U);
  EXPECT_EQ(text.find('x'), npos);
}

TEST(SStringFind, BackwardsTextStartsWhereItStillFits) {
  const SString text("abcabc");
  EXPECT_EQ(text.rfind("abc"), 3U);
  EXPECT_EQ(text.rfind("abc", 100), 3U);
  EXPECT_EQ(text.rfind("abc", 2), 0U);
  EXPECT_EQ(text.rfind("bc", 0), npos);
  EXPECT_EQ(text.rfind("abcabcd"), npos);
}

TEST(SStringFind, AnEmptySetFindsNothing) {
  const SString text("abc");
  EXPECT_EQ(text.findFirstOf(""), npos);
  EXPECT_EQ(text.findLastOf(""), npos);
  EXPECT_EQ(text.findFirstNotOf("", 1), 1U);
  EXPECT_EQ(text.findLastNotOf(""), 2U);
}

TEST(SStringFind, NothingIsFoundInAnEmptyString) {
  const SString text;
  EXPECT_EQ(text.find("a"), npos);
  EXPECT_EQ(text.find('a'), npos);
  EXPECT_EQ(text.rfind("a"), npos);
  EXPECT_EQ(text.findFirstOf("a"), npos);
  EXPECT_EQ(text.findLastOf("a"), npos);
  EXPECT_EQ(text.findFirstNotOf("a"), npos);
  EXPECT_EQ(text.findLastNotOf("a"), npos);
  EXPECT_EQ(text.findFirstNotOf('a'), npos);
  EXPECT_EQ(text.findLastNotOf('a'), npos);
}

TEST(SStringFind, OneCharacterThatIsNotIt) {
  const SString text("--ab--");
  EXPECT_EQ(text.findFirstNotOf('-'), 2U);
  EXPECT_EQ(text.findFirstNotOf('-', 4), npos);
  EXPECT_EQ(text.findLastNotOf('-'), 3U);
  EXPECT_EQ(text.findLastNotOf('-', 1), npos);
  EXPECT_EQ(text.findFirstNotOf('a', 2), 3U);
}

TEST(SStringFind, NulBytesAreOrdinaryBytes) {
  const std::string_view bytes("a\0b\0c", 5);
  const SString text(bytes);
  EXPECT_EQ(text.find('\0'), 1U);
  EXPECT_EQ(text.find(std::string_view("\0c", 2)), 3U);
  EXPECT_EQ(text.findLastOf(std::string_view("\0", 1)), 3U);
  EXPECT_EQ(text.findFirstNotOf(std::string_view("a\0", 2)), 2U);
}

TEST(SStringFind, NothingBehindTheLengthIsLookedAt) {
  SString text("abcdef");
  text.resize(3);
  EXPECT_EQ(text.find("d"), npos);
  EXPECT_EQ(text.find(std::string_view("\0", 1)), npos);
  EXPECT_EQ(text.findLastOf("def"), npos);
}

// All texts over two letters against the searches of the standard string.

std::vector<std::string> textsUpTo(std::size_t length) {
  std::vector<std::string> texts = {""};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (texts[i].size() == length) continue;
    texts.push_back(texts[i] + "a");
    texts.push_back(texts[i] + "b");
  }
  return texts;
}

SString::Size standard(std::size_t found) {
  return found == std::string::npos ? npos : static_cast<SString::Size>(found);
}

std::size_t standardPosition(SString::Size position) {
  return position == npos ? std::string::npos : position;
}

void compareSearches(const std::string& model, const std::string& text, SString::Size position) {
  SCOPED_TRACE("\"" + text + "\" in \"" + model + "\" from " + std::to_string(position));
  const SString real{std::string_view(model)};
  const std::size_t at = standardPosition(position);
  EXPECT_EQ(real.find(text, position), standard(model.find(text, at)));
  EXPECT_EQ(real.rfind(text, position), standard(model.rfind(text, at)));
  EXPECT_EQ(real.findFirstOf(text, position), standard(model.find_first_of(text, at)));
  EXPECT_EQ(real.findLastOf(text, position), standard(model.find_last_of(text, at)));
  EXPECT_EQ(real.findFirstNotOf(text, position), standard(model.find_first_not_of(text, at)));
  EXPECT_EQ(real.findLastNotOf(text, position), standard(model.find_last_not_of(text, at)));
}

TEST(SStringFind, AgreesWithTheStandardStringOnAllShortTexts) {
  const std::vector<std::string> patterns = textsUpTo(3);
  for (const std::string& model : textsUpTo(5)) {
    for (const std::string& pattern : patterns) {
      for (SString::Size position = 0; position < 8; ++position) {
        compareSearches(model, pattern, position);
      }
      compareSearches(model, pattern, npos);
    }
  }
}

}  // namespace
}  // namespace vessant::test
