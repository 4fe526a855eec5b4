// Positions outside a string and lengths that no string can have.
#include <string_view>

#include <gtest/gtest.h>

#include "launcher/base/SString.h"
#include "support/AllocationWatch.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

struct Misuse {
  const char* name;
  void (*apply)(SString& text, const SString& other);
};

void PrintTo(const Misuse& misuse, std::ostream* out) {
  *out << misuse.name;
}

// Every operation on "abc" with the position 4, one behind the end. `other` is "abc" too.
class SStringRange : public testing::TestWithParam<Misuse> {};

TEST_P(SStringRange, APositionBehindTheEndThrowsAndChangesNothing) {
  const SString other("abc");
  SString text("abc");
  EXPECT_THROW(GetParam().apply(text, other), RangeException);
  EXPECT_EQ(text, "abc");
}

INSTANTIATE_TEST_SUITE_P(
    Operations, SStringRange,
    testing::Values(
        Misuse{"construct", [](SString&, const SString& o) { const SString part(o, 4, 0); }},
        Misuse{"assign", [](SString& s, const SString& o) { s.assign(o, 4, 1); }},
        Misuse{"append", [](SString& s, const SString& o) { s.append(o, 4, 1); }},
        Misuse{"insert text", [](SString& s, const SString&) { s.insert(4, "x"); }},
        Misuse{"insert nothing", [](SString& s, const SString&) { s.insert(4, ""); }},
        Misuse{"insert a character", [](SString& s, const SString&) { s.insert(4, 1, 'x'); }},
        Misuse{"insert itself", [](SString& s, const SString&) { s.insert(4, s); }},
        Misuse{"erase", [](SString& s, const SString&) { s.erase(4, 1); }},
        Misuse{"erase nothing", [](SString& s, const SString&) { s.erase(4, 0); }},
        Misuse{"replace by text", [](SString& s, const SString&) { s.replace(4, 0, "x"); }},
        Misuse{"replace by a character",
               [](SString& s, const SString&) { s.replace(4, 0, 1, 'x'); }},
        Misuse{"substr", [](SString& s, const SString&) { static_cast<void>(s.substr(4)); }},
        Misuse{"compare",
               [](SString& s, const SString&) { static_cast<void>(s.compare(4, 1, "x")); }},
        Misuse{"compare with a part",
               [](SString& s, const SString& o) { static_cast<void>(s.compare(0, 1, o, 4, 1)); }},
        Misuse{"copy",
               [](SString& s, const SString&) {
                 char buffer[4];
                 s.copy(buffer, 1, 4);
               }},
        Misuse{"at", [](SString& s, const SString&) { static_cast<void>(s.at(4)); }},
        Misuse{"mutableAt", [](SString& s, const SString&) { s.mutableAt(4) = 'x'; }}));

TEST(SStringRange, TheEndIsAPositionForAllButTheElementAccess) {
  SString text("abc");
  char buffer[1] = {'?'};
  EXPECT_EQ(text.substr(3), "");
  EXPECT_EQ(text.compare(3, 1, ""), 0);
  EXPECT_EQ(text.compare(3, 1, text, 3, 1), 0);
  EXPECT_EQ(text.copy(buffer, 1, 3), 0U);
  EXPECT_EQ(buffer[0], '?');
  EXPECT_THROW(static_cast<void>(text.at(3)), RangeException);
  EXPECT_THROW(text.mutableAt(3) = 'x', RangeException);
  EXPECT_STREQ(text.cString(), "abc");
}

TEST(SStringRange, AStringWithoutStorageHasNoElements) {
  SString text;
  EXPECT_THROW(static_cast<void>(text.at(0)), RangeException);
  EXPECT_THROW(text.mutableAt(0) = 'x', RangeException);
  EXPECT_EQ(text.erase(0, 1), "");
  EXPECT_EQ(text.substr(0), "");
}

// Every operation that makes "abc" longer than a string can be.
class SStringLength : public testing::TestWithParam<Misuse> {};

TEST_P(SStringLength, TooLongAResultThrowsBeforeAnythingIsChanged) {
  const SString other("abc");
  SString text(other);
  AllocationWatch watch;
  EXPECT_THROW(GetParam().apply(text, other), LengthException);
  EXPECT_TRUE(watch.sizes().empty()) << "nothing may be asked for";
  EXPECT_EQ(text, "abc");
  EXPECT_EQ(text.cString(), other.cString());
}

constexpr SString::Size kTooMany = SString::npos - 3;  // for a string of three characters

std::string_view hugeView() {
  return {"", std::size_t{SString::npos} * 2};  // never read: the length decides
}

INSTANTIATE_TEST_SUITE_P(
    Operations, SStringLength,
    testing::Values(
        Misuse{"append", [](SString& s, const SString&) { s.append(kTooMany, 'x'); }},
        Misuse{"append npos", [](SString& s, const SString&) { s.append(SString::npos, 'x'); }},
        Misuse{"append a text", [](SString& s, const SString&) { s.append(hugeView()); }},
        Misuse{"insert", [](SString& s, const SString&) { s.insert(1, kTooMany, 'x'); }},
        Misuse{"insert a text", [](SString& s, const SString&) { s.insert(1, hugeView()); }},
        Misuse{"replace", [](SString& s, const SString&) { s.replace(0, 1, kTooMany, 'x'); }},
        Misuse{"replace all", [](SString& s, const SString&) { s.replace(0, 3, kTooMany, 'x'); }},
        Misuse{"replace by a text",
               [](SString& s, const SString&) { s.replace(0, 3, hugeView()); }},
        Misuse{"assign", [](SString& s, const SString&) { s.assign(SString::maxSize + 1, 'x'); }},
        Misuse{"assign a text", [](SString& s, const SString&) { s.assign(hugeView()); }},
        Misuse{"resize", [](SString& s, const SString&) { s.resize(SString::maxSize + 1); }},
        Misuse{"reserve", [](SString& s, const SString&) { s.reserve(SString::maxSize + 1); }},
        Misuse{"construct", [](SString&, const SString&) { const SString made(hugeView()); }}));

TEST(SStringLength, TheLargestLengthsAreOnlyAMatterOfMemory) {
  AllocationWatch watch;
  SString text("abc");
  watch.failNext(100);
  EXPECT_THROW(text.append(kTooMany - 1, 'x'), LengthException) << "maxSize is one below that sum";
  EXPECT_THROW(text.append(SString::maxSize - 3, 'x'), std::bad_alloc);
  EXPECT_THROW(text.reserve(SString::maxSize), std::bad_alloc);
  EXPECT_EQ(watch.sizes().back(), std::size_t{SString::maxSize} + 2);
  EXPECT_EQ(text, "abc");
}

TEST(SStringLength, TheConstantsAreThoseOf32Bits) {
  EXPECT_EQ(SString::npos, 4294967295U);
  EXPECT_EQ(SString::maxSize, 4294967293U);
}

}  // namespace
}  // namespace vessant::test
